# Sourced by scripts/test.sh and bench/ci_build_cost.sh: how CI configures each of its builds.
#
# What every build is configured with: warnings as errors, and debug information as line tables
# only (-g1), which is all a sanitizer's report, a backtrace or a debugger's "where" needs here,
# for about a quarter less compiling than full -g.
ci_config=(-G Ninja -DJUKARRA_WERROR=ON
    "-DCMAKE_CXX_FLAGS_RELWITHDEBINFO=-O2 -g1 -DNDEBUG" "-DCMAKE_CXX_FLAGS_DEBUG=-g1")
# Each section's own options. The normal build compiles file by file, as clang-tidy reads its
# compile database; the ASan, TSan and fuzz builds compile each target in unity batches
# (JUKARRA_UNITY_BUILD in CMakeLists.txt), which parses the shared headers once a batch instead of
# once a file.
normal_config=(-DCMAKE_BUILD_TYPE=RelWithDebInfo -DJUKARRA_BUILD_BENCH=ON)
asan_config=(-DCMAKE_BUILD_TYPE=Debug -DJUKARRA_SANITIZE=ON -DJUKARRA_UNITY_BUILD=ON)
tsan_config=(-DCMAKE_BUILD_TYPE=RelWithDebInfo -DJUKARRA_SANITIZE_THREAD=ON
    -DJUKARRA_BUILD_GUI=OFF -DJUKARRA_UNITY_BUILD=ON)
fuzz_config=(-DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_COMPILER=clang++
    -DJUKARRA_BUILD_FUZZ=ON -DJUKARRA_BUILD_GUI=OFF -DJUKARRA_BUILD_TESTS=OFF
    -DJUKARRA_UNITY_BUILD=ON)
# The fuzz build makes only the fuzz programs (and the libraries they link).
fuzz_targets=()
for source in fuzz/*.cpp; do
    [ -e "$source" ] || continue
    fuzz_targets+=("$(basename "$source" .cpp)")
done

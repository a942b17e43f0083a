#pragma once

// Sets the time zone (TZ) for one scope and puts back what was there, so that a test of local
// time leaves the next test the zone it found.

#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>

namespace jk::test {

class ZoneScope {
public:
    explicit ZoneScope(const char* zone) {
        if (const char* old = std::getenv("TZ")) {
            m_old = old;
        }
        setenv("TZ", zone, 1);
        tzset();
    }
    ~ZoneScope() {
        if (m_old) {
            setenv("TZ", m_old->c_str(), 1);
        } else {
            unsetenv("TZ");
        }
        tzset();
    }
    ZoneScope(const ZoneScope&) = delete;
    ZoneScope& operator=(const ZoneScope&) = delete;

private:
    std::optional<std::string> m_old;
};

}  // namespace jk::test

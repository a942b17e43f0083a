#include "platform/ProgramStart.h"

#include <sys/stat.h>
#include <unistd.h>

#include <QProcess>
#include <QStringList>

#include "platform/ExecutableSearch.h"

namespace jk {

bool ProgramIsThere(const std::string& program) {
    if (program.empty()) {
        return false;
    }
    if (program.find('/') == std::string::npos) {
        return !FindExecutableOnPath(program).empty();
    }
    struct stat status {};
    return ::stat(program.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
           ::access(program.c_str(), X_OK) == 0;
}

ProgramStart StartDetachedProgram(const std::string& program,
                                  const std::vector<std::string>& arguments) {
    if (!ProgramIsThere(program)) {
        return {false, program + ": no such program"};
    }
    QStringList list;
    for (const std::string& argument : arguments) {
        list.push_back(QString::fromStdString(argument));
    }
    QProcess process;
    process.setProgram(QString::fromStdString(program));
    process.setArguments(list);
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    if (!process.startDetached()) {
        return {false, program + ": " + process.errorString().toStdString()};
    }
    return {true, {}};
}

}  // namespace jk

#include "cli/report_template_path.h"

#include <sys/stat.h>
#include <unistd.h>

#include <climits>

#ifndef RM_SOURCE_DIR
#define RM_SOURCE_DIR ""
#endif

namespace rm::cli {

namespace {

std::string Joined(const std::string& folder, const std::string& name) {
    if (folder.empty()) return "";
    return folder.back() == '/' ? folder + name : folder + "/" + name;
}

std::string Parent(const std::string& folder) {
    const size_t slash = folder.find_last_of('/');
    if (slash == std::string::npos) return "";
    return slash == 0 ? "/" : folder.substr(0, slash);
}

std::string ExecutableFolder() {
    char path[PATH_MAX];
    const ssize_t n = readlink("/proc/self/exe", path, sizeof path - 1);
    if (n <= 0) return "";
    return Parent(std::string(path, static_cast<size_t>(n)));
}

bool IsFile(const std::string& path) {
    struct stat st {};
    return stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

}  // namespace

std::vector<std::string> ReportTemplateCandidates(const std::string& relativeName, const std::string& executableFolder,
                                                  const std::string& sourceFolder) {
    std::string name = relativeName;
    for (char& c : name) {
        if (c == '\\') c = '/';
    }
    std::vector<std::string> candidates;
    const auto add = [&candidates](const std::string& path) {
        if (!path.empty()) candidates.push_back(path);
    };
    add(Joined(executableFolder, name));
    const std::string up = executableFolder.empty() ? "" : Parent(executableFolder);
    add(Joined(up, name));
    add(Joined(up.empty() ? "" : Joined(up, "share/quorle-ripplemark"), name));
    add(Joined(sourceFolder, name));
    return candidates;
}

std::string FindReportTemplate(const std::string& relativeName, std::vector<std::string>& tried) {
    tried = ReportTemplateCandidates(relativeName, ExecutableFolder(), RM_SOURCE_DIR);
    for (const std::string& path : tried) {
        if (IsFile(path)) return path;
    }
    return "";
}

}  // namespace rm::cli

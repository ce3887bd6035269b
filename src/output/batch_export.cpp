#include "output/batch_export.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <filesystem>
#include <future>
#include <thread>

#include "output/batch_file_export.h"
#include "output/fdx_file.h"

namespace rm {

namespace {

namespace fs = std::filesystem;

bool HasKvrExtension(const fs::path& p) {
    std::string ext = p.extension().string();
    std::transform(ext.begin(), ext.end(), ext.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return ext == ".kvr";
}

std::string StemOf(const std::string& dataFile) {
    const fs::path p(dataFile);
    return HasKvrExtension(p) ? p.stem().string() : p.filename().string();
}

// The folder a file's outputs go to, with a trailing separator (empty for the current folder).
std::string OutputFolder(const BatchExportSettings& settings, const std::string& dataFile) {
    fs::path folder = settings.exportToDifferentDirectory ? fs::path(settings.outputDirectory)
                                                          : fs::path(dataFile).parent_path();
    if (folder.empty()) return {};
    std::string text = folder.string();
    if (text.back() != '/') text += '/';
    return text;
}

// Processes the files on `jobs` threads; result i is ready when futures[i] is.
class FileRunner {
public:
    // Each file gets its own copy of the application tree, made here on the calling thread:
    // the trees' reference counts are plain integers and must not be touched by two threads.
    FileRunner(const std::vector<std::string>& files, const BatchExportSettings& settings, const NodeRef& appTree)
        : files_(files), settings_(settings), promises_(files.size()) {
        for (size_t i = 0; i < files.size(); ++i) appTrees_.push_back(CopyTree(appTree));
        for (auto& p : promises_) futures_.push_back(p.get_future());
        const int jobs = std::clamp(settings.jobs, 1, std::max<int>(1, static_cast<int>(files.size())));
        if (jobs > 1) {
            for (int j = 0; j < jobs; ++j) threads_.emplace_back([this] { Work(); });
        }
    }
    ~FileRunner() {
        for (std::thread& t : threads_) t.join();
    }
    FileRunner(const FileRunner&) = delete;
    FileRunner& operator=(const FileRunner&) = delete;

    // Result of file i; in a serial run the file is processed now.
    BatchFileResult Take(size_t i) {
        if (threads_.empty()) Run(i);
        return futures_[i].get();
    }

private:
    void Work() {
        for (size_t i = next_++; i < files_.size(); i = next_++) Run(i);
    }
    void Run(size_t i) {
        try {
            NodeRef tree = std::move(appTrees_[i]);
            promises_[i].set_value(ExportBatchFile(files_[i], settings_, std::move(tree)));
        } catch (...) {
            promises_[i].set_exception(std::current_exception());
        }
    }

    const std::vector<std::string>& files_;
    const BatchExportSettings& settings_;
    std::vector<NodeRef> appTrees_;
    std::vector<std::promise<BatchFileResult>> promises_;
    std::vector<std::future<BatchFileResult>> futures_;
    std::atomic<size_t> next_{0};
    std::vector<std::thread> threads_;
};

void ShowMessages(const BatchFileResult& r, UserPrompt& prompt) {
    for (const auto& [title, text] : r.messages) {
        if (title.empty()) {
            prompt.Message(text);
        } else {
            prompt.TitledMessage(title, text);
        }
    }
}

}  // namespace

std::string UpOrSideLookingMessage(const std::string& file) {
    return "File: " + file + "\ncontains data from an up or side looking system.\nData from this file will not be processed.";
}

std::vector<std::string> ResolveBatchList(const std::vector<std::string>& entries) {
    std::vector<std::string> files;
    for (const std::string& entry : entries) {
        std::error_code error;
        if (!fs::is_directory(entry, error)) {
            files.push_back(entry);
            continue;
        }
        std::vector<std::string> found;
        for (const fs::directory_entry& e : fs::directory_iterator(entry, error)) {
            if (HasKvrExtension(e.path()) && !e.is_directory(error)) found.push_back(e.path().string());
        }
        std::sort(found.begin(), found.end());
        files.insert(files.end(), found.begin(), found.end());
    }
    return files;
}

std::string BatchOutputPath(const BatchExportSettings& settings, const std::string& dataFile,
                            const std::string& extension) {
    return OutputFolder(settings, dataFile) + StemOf(dataFile) + extension;
}

std::string BatchFdxPath(const BatchExportSettings& settings, const std::vector<std::string>& files) {
    if (files.empty()) return OutputFolder(settings, std::string()) + "Batch.fdx";
    return BatchOutputPath(settings, files.front(), ".fdx");
}

BatchExportResult RunBatchExport(const std::vector<std::string>& entries, const BatchExportSettings& settings,
                                 const AppSettings& app, SummaryList* summary, UserPrompt& prompt) {
    BatchExportResult result;
    const std::vector<std::string> files = ResolveBatchList(entries);
    result.fdxPath = BatchFdxPath(settings, files);
    std::FILE* fdx = std::fopen(result.fdxPath.c_str(), "wb");
    if (fdx == nullptr) {
        prompt.Message(std::string("Unable to create file: ") + result.fdxPath);
        return result;
    }
    bool written = WriteFdxHead(fdx);

    FileRunner runner(files, settings, app.Root());
    const int total = static_cast<int>(files.size());
    for (size_t i = 0; i < files.size(); ++i) {
        prompt.Progress(static_cast<int>(i) + 1, total, files[i]);
        BatchFileResult file = runner.Take(i);
        ShowMessages(file, prompt);
        result.failedOutputs += file.failedOutputs;
        switch (file.status) {
            case BatchFileStatus::Refused: ++result.refused; continue;
            case BatchFileStatus::Skipped: ++result.skipped; continue;
            case BatchFileStatus::Exported: ++result.exported; break;
        }
        written = WriteFdxText(fdx, file.fdxBlock) && written;
        if (settings.addRecordToDischargeSummary && summary != nullptr) summary->Add(file.record);
    }
    written = WriteFdxTail(fdx) && written;
    written = std::fclose(fdx) == 0 && written;
    if (!written) prompt.Message("Error writing to file");
    result.ok = written;
    prompt.Message(kAllFilesExported);
    return result;
}

}  // namespace rm

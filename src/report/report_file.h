#pragma once

// A report file: opened with "w+", written fragment by fragment, closed on every way out.
// Write errors are not looked at; only the open is.

#include <cstdio>
#include <string>

namespace pt::report {

class ReportFile {
public:
    explicit ReportFile(const std::string& path) : _file(std::fopen(path.c_str(), "w+")) {}
    ~ReportFile() { close(); }
    ReportFile(const ReportFile&) = delete;
    ReportFile& operator=(const ReportFile&) = delete;

    bool isOpen() const { return _file != nullptr; }
    ReportFile& operator<<(const std::string& text) {
        std::fwrite(text.data(), 1, text.size(), _file);
        return *this;
    }
    void close() {
        if (_file) {
            std::fclose(_file);
            _file = nullptr;
        }
    }

private:
    std::FILE* _file;
};

}  // namespace pt::report

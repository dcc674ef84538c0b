// A disk in memory that can refuse.
#pragma once

#include <cstdio>
#include <map>
#include <set>

#include "base/Files.h"
#include "base/Paths.h"

namespace melvorin::testing {

class MemoryFiles : public Files {
  public:
    bool exists(TextView path) override { return content.contains(Text(path)); }
    Result<std::uint64_t> size(TextView path) override {
        return exists(path) ? Result<std::uint64_t>::success(content.at(Text(path)).size())
                            : Result<std::uint64_t>::failure(u"There is no such file.");
    }
    Result<std::string> read(TextView path) override {
        return exists(path) ? Result<std::string>::success(content.at(Text(path)))
                            : Result<std::string>::failure(u"There is no such file.");
    }
    Result<Done> write(TextView path, std::string_view bytes) override {
        if (isFull)
            return Result<Done>::failure(u"The disk is full.");
        content[Text(path)] = bytes;
        return Result<Done>::success({});
    }
    Result<Done> replace(TextView path, std::string_view bytes) override {
        return write(path, bytes);
    }
    Result<Done> remove(TextView path) override {
        content.erase(Text(path));
        return Result<Done>::success({});
    }
    Result<Text> createTemporary(TextView prefix) override {
        Text name = newName(prefix);
        content[name] = "";
        return Result<Text>::success(std::move(name));
    }
    std::unique_ptr<HeldFile> createHeld(TextView prefix) override {
        auto file = std::make_unique<Held>(*this, newName(prefix));
        content[file->path()] = "";
        return file;
    }
    std::vector<std::unique_ptr<HeldFile>> takeHeld(TextView prefix) override {
        std::vector<std::unique_ptr<HeldFile>> taken;
        for (const auto& [path, bytes] : content) {
            if (fileNamePart(path).starts_with(prefix) && !held.contains(path))
                taken.push_back(std::make_unique<Held>(*this, path));
        }
        return taken;
    }

    std::map<Text, std::string> content;
    std::set<Text> held;
    bool isFull = false;
    int names = 0;

  private:
    // Later names count as written later.
    class Held : public HeldFile {
      public:
        Held(MemoryFiles& disk, Text path) : disk_(disk), path_(std::move(path)) {
            disk_.held.insert(path_);
        }
        Held(const Held&) = delete;
        Held& operator=(const Held&) = delete;
        ~Held() override { disk_.held.erase(path_); }
        Text path() const override { return path_; }
        bool append(std::string_view bytes) override {
            if (!disk_.isFull)
                disk_.content.at(path_) += bytes;
            return !disk_.isFull;
        }
        Result<std::string> read() override { return disk_.read(path_); }
        std::int64_t lastWritten() const override {
            return std::stoll(toUtf8(fileNamePart(path_)).substr(3), nullptr, 16);
        }
        Text lastWrittenInWords() const override { return u"just now"; }
        void remove() override { disk_.content.erase(path_); }

      private:
        MemoryFiles& disk_;
        Text path_;
    };

    Text newName(TextView prefix) {
        char digits[16];
        std::snprintf(digits, sizeof digits, "%x.tmp", static_cast<unsigned>(++names));
        return u"C:\\Temp\\" + Text(prefix) + fromUtf8(digits);
    }
};

}  // namespace melvorin::testing

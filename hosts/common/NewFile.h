// A text file that is written piece by piece and takes its place only when it is whole.
#pragma once

#include <fstream>
#include <string>
#include <string_view>

namespace hosts {

// Written beside its place, under the name with ".new" behind it, as UTF-8. What was not kept is removed, and leaves
// what stood in its place.
class NewFile {
  public:
    // Fails with HostError when the file cannot be written.
    explicit NewFile(std::wstring path);
    NewFile(const NewFile&) = delete; // one file
    NewFile& operator=(const NewFile&) = delete;
    ~NewFile();

    // Fails with HostError when it cannot be written, at the latest in Keep.
    void Write(std::wstring_view text);
    void Keep();

  private:
    [[noreturn]] void Fail() const;

    std::wstring mvarPath;
    std::wstring mvarBeside;
    std::ofstream mvarFile;
    bool mvarKept = false;
};

} // namespace hosts

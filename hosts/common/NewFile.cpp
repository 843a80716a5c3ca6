#include "hosts/common/NewFile.h"

#include <windows.h>

#include <filesystem>
#include <utility>

#include "hosts/common/HostError.h"
#include "hosts/common/Utf8.h"

namespace hosts {

NewFile::NewFile(std::wstring path)
    : mvarPath(std::move(path)), mvarBeside(mvarPath + L".new"),
      mvarFile(std::filesystem::path(mvarBeside), std::ios::binary | std::ios::trunc) {
    if (!mvarFile) Fail();
}

NewFile::~NewFile() {
    if (mvarKept) return;
    mvarFile.close();
    DeleteFileW(mvarBeside.c_str());
}

void NewFile::Write(std::wstring_view text) {
    const std::string bytes = ToUtf8(text);
    mvarFile.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!mvarFile) Fail();
}

void NewFile::Keep() {
    mvarFile.close();
    if (!mvarFile || MoveFileExW(mvarBeside.c_str(), mvarPath.c_str(), MOVEFILE_REPLACE_EXISTING) == 0) Fail();
    mvarKept = true;
}

void NewFile::Fail() const {
    throw HostError(L"cannot write \"" + mvarPath + L"\"; check the path, the right to write and the space left");
}

} // namespace hosts

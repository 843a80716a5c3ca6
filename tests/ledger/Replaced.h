// Texts that tests change in one place.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "hosts/common/Utf8.h"

// The text with `to` for the first `from`, which it must hold.
inline std::wstring Replaced(std::wstring text, const std::wstring& from, const std::wstring& to) {
    const auto at = text.find(from);
    EXPECT_NE(at, std::wstring::npos) << hosts::ToUtf8(from);
    return text.replace(at, from.size(), to);
}

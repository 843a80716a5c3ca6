// Hands texts out one by one, for a script's For Each. Counts its references from 0; hold it by ComPtr.
#pragma once

#include <oaidl.h>

#include <atomic>
#include <cstddef>
#include <string>
#include <vector>

namespace hosts::script {

class TextEnumerator final : public IEnumVARIANT {
  public:
    // The first text handed out is the one at the position, from 0.
    TextEnumerator(std::vector<std::wstring> texts, std::size_t position);
    TextEnumerator(const TextEnumerator&) = delete; // Clone makes a counted copy
    TextEnumerator& operator=(const TextEnumerator&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) noexcept override;
    ULONG STDMETHODCALLTYPE AddRef() noexcept override { return ++mvarReferences; }
    ULONG STDMETHODCALLTYPE Release() noexcept override;
    HRESULT STDMETHODCALLTYPE Next(ULONG count, VARIANT* values, ULONG* fetched) noexcept override;
    HRESULT STDMETHODCALLTYPE Skip(ULONG count) noexcept override;
    HRESULT STDMETHODCALLTYPE Reset() noexcept override;
    HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT** copy) noexcept override;

  private:
    ~TextEnumerator() = default;

    std::vector<std::wstring> mvarTexts;
    std::size_t mvarPosition;
    std::atomic<ULONG> mvarReferences{0};
};

} // namespace hosts::script

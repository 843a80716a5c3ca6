#include "hosts/script/Pause.h"

#include <chrono>

namespace hosts::script {

namespace {

using Clock = std::chrono::steady_clock;

void HandleMessages() {
    MSG message{};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

} // namespace

void Pause(DWORD milliseconds) {
    const Clock::time_point end = Clock::now() + std::chrono::milliseconds(milliseconds);
    for (Clock::time_point now = Clock::now(); now < end; now = Clock::now()) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - now);
        MsgWaitForMultipleObjectsEx(0, nullptr, static_cast<DWORD>(left.count()), QS_ALLINPUT, MWMO_INPUTAVAILABLE);
        HandleMessages();
    }
}

} // namespace hosts::script

// A flag that is set while a scope lasts and then as it was before.
#pragma once

#include <utility>

namespace kestrel::dialogs {

class RaisedFlag {
  public:
    explicit RaisedFlag(bool& flag) noexcept : mvarFlag(flag), mvarBefore(std::exchange(flag, true)) {}
    // Put back once.
    RaisedFlag(const RaisedFlag&) = delete;
    RaisedFlag& operator=(const RaisedFlag&) = delete;
    ~RaisedFlag() { mvarFlag = mvarBefore; }

  private:
    bool& mvarFlag;
    bool mvarBefore;
};

} // namespace kestrel::dialogs

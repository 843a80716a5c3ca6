#include "ledger/cli/RoomWatch.h"

#include "hosts/common/Console.h"
#include "hosts/common/Text.h"
#include "ledger/core/Series.h"

namespace ledger {

void RoomWatch::Look(const std::vector<SeriesRoom>& rooms) {
    for (const SeriesRoom& room : rooms)
        if (room.percent < mvarWarnPercent && mvarTold.emplace(room.band, room.series, room.left == 0).second)
            Tell(room);
}

void RoomWatch::Tell(const SeriesRoom& room) const {
    const std::wstring text = RoomText(room.series, room.band, room.left);
    if (!mvarOutput.IsJson()) return hosts::ReportLine(L"warning: " + hosts::Shown(text));
    hosts::PrintLine(JsonText({{"warning", "room"},
                               {"band", ToJson(room.band)},
                               {"series", ToJson(room.series)},
                               {"left", room.left},
                               {"text", ToJson(text)}}));
}

} // namespace ledger

// Numbers of the strings that the dialogs put together themselves; those of controls stand in the templates.
#pragma once

namespace kestrel::dialogs::text {

enum Text : int {
    TracksHint = 1521,
    NoTracksHint = 1522,
    SimpleRelationsHint = 1523,
    LayeredRelationsHint = 1524,
    NoRelationsHint = 1525,
    AppendTip = 1526,
    AddFieldTip = 1527,
    DropFieldTip = 1528,
    ChooseStyleHint = 1530, // the next five, one for each style, in the order of the styles
    ReferenceBand = 1536,
    FirstBandHint = 1537,
    NoBandsHint = 1538,
    OneFinding = 1539,
    Findings = 1540,
    StripCaption = 1541,
    SelectAction = 1542,
    StyleFixed = 1600,
    SwapNone = 1611,
    IncrNever = 1621,
    None = 1701,
    DesignerTitle = 1500,
    LayerCaption = 1859,
    AddRelations = 1851,
    ModifyRelations = 1865
};

inline constexpr int StyleCount = 5;
inline constexpr int SwapCount = 3;
inline constexpr int IncrCount = 6;

} // namespace kestrel::dialogs::text

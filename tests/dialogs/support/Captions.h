// Which text of the string table each control of the dialogs has.
#pragma once

#include <vector>

#include "resources/dialogids.h"

namespace kestrel::test {

// A text of a form: of the control itself, or of the label in front of it.
struct Caption {
    int control;
    int number;
    bool label = false;
};

[[nodiscard]] constexpr Caption LabelOf(int control, int number) { return {control, number, true}; }

inline const std::vector<Caption> designerCaptions{{ID_famPropertiy, 1511},
                                                   LabelOf(ID_txtName, 1501),
                                                   LabelOf(ID_cboStyle, 1502),
                                                   LabelOf(ID_txtDefault, 1503),
                                                   LabelOf(ID_txtFormat, 1504),
                                                   LabelOf(ID_txtLength, 1505),
                                                   LabelOf(ID_cboBound, 1506),
                                                   {ID_famRelation, 1507},
                                                   LabelOf(ID_cboIncrMode, 1508),
                                                   LabelOf(ID_txtRange, 1509),
                                                   LabelOf(ID_txtRange + 1, 1510),
                                                   LabelOf(ID_lstTracks, 1512),
                                                   LabelOf(ID_cboTrigerBand, 1513),
                                                   LabelOf(ID_cboSwapMode, 1514),
                                                   {ID_cmdAppend, 1515},
                                                   {ID_cmdDrop, 1516},
                                                   {ID_cmdSave, 1551},
                                                   {ID_cmdAdvanced, 1552},
                                                   {ID_cmdApply, 1553},
                                                   {ID_cmdClose, 1554},
                                                   {ID_cmdAdd, 1561},
                                                   {ID_cmdDelete, 1562},
                                                   {ID_cmdModify, 1563},
                                                   {ID_cmdClear, 1564}};
inline const std::vector<Caption> bandCaptions{
    {ID_famPropertiy, 1511},       LabelOf(ID_txtName, 1501),     LabelOf(ID_cboStyle, 1502),
    LabelOf(ID_txtDefault, 1503),  LabelOf(ID_txtFormat, 1504),   LabelOf(ID_txtLength, 1505),
    LabelOf(ID_cboBound, 1506),    LabelOf(ID_cboIncrMode, 1508), LabelOf(ID_cboTrigerBand, 1513),
    LabelOf(ID_cboSwapMode, 1514), {ID_famRefer, 1854},           {ID_optPosition, 1814},
    {ID_optPosition + 1, 1815},    {ID_optPosition + 2, 1816},    {ID_cmdOK, 1812},
    {ID_cmdCancel, 1813}};
inline const std::vector<Caption> nodeCaptions{
    LabelOf(ID_txtCode, 1852), LabelOf(ID_txtValue, 1853), {ID_famPosition, 1854},
    {ID_optStyle, 1855},       {ID_optStyle + 1, 1856},    {ID_optStyle + 2, 1857},
    {ID_optStyle + 3, 1858},   {ID_cmdOK, 1860},           {ID_cmdCancel, 1861}};
inline const std::vector<Caption> fieldCaptions{{ID_cmdAdd, 1804}, {ID_cmdDrop, 1801}, {ID_cmdClose, 1802}};
inline const std::vector<Caption> optionCaptions{LabelOf(ID_lstLayers, 1902), {ID_famApply, 1903}, {ID_optApply, 1904},
                                                 {ID_optApply + 1, 1905},     {ID_cmdUp, 1906},    {ID_cmdDown, 1907},
                                                 {ID_cmdApply, 1908},         {ID_cmdClose, 1909}, {ID_chkStyle, 1910},
                                                 {ID_chkSaveMode, 1911},      {ID_chkUpcase, 1912}};

} // namespace kestrel::test

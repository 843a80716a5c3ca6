// Identifiers of the dialogs, their controls and their menus. A control is named ID_ and its name in the code.
#pragma once

// NOLINTBEGIN(cppcoreguidelines-macro-usage): the resource compiler reads them too, and knows macros
#define IDD_frmDesigners 101
#define IDD_frmAddBands 102
#define IDD_frmAddNodes 103
#define IDD_frmDropFields 104
#define IDD_frmAdvanceds 105
#define IDR_mnuBand 111
#define IDR_mnuNode 112

// The buttons that Enter and Escape stand for have the system's identifiers.
#define ID_cmdOK 1
#define ID_cmdCancel 2
#define ID_cmdClose 2

#define ID_picBkg 1001
#define ID_picBand 1002
#define ID_picMove 1003
#define ID_imgPos 1004
#define ID_imgButton 1005
#define ID_famPropertiy 1006
#define ID_txtName 1007
#define ID_cboStyle 1008
#define ID_txtDefault 1009
#define ID_txtFormat 1010
#define ID_txtLength 1011
#define ID_cboBound 1012
#define ID_cboIncrMode 1013
#define ID_txtRange 1014 // two, the second 1015
#define ID_vscRange 1016 // two, the second 1017
#define ID_cboTrigerBand 1018
#define ID_cboSwapMode 1019
#define ID_lstTracks 1020
#define ID_tvwAvailable 1021
#define ID_famRelation 1022
#define ID_cmdAdd 1023
#define ID_cmdDelete 1024
#define ID_cmdModify 1025
#define ID_cmdClear 1026
#define ID_cmdAppend 1027
#define ID_cmdDrop 1028
#define ID_lblInfo 1029 // two in the designer, the second 1030
#define ID_cmdSave 1031
#define ID_cmdAdvanced 1032
#define ID_cmdApply 1033
#define ID_lblStatus 1034
#define ID_famRefer 1035
#define ID_optPosition 1036 // three
#define ID_txtCode 1040
#define ID_txtValue 1041
#define ID_famPosition 1042
#define ID_optStyle 1043 // four
#define ID_lstFields 1050
#define ID_lstLayers 1051
#define ID_cmdUp 1052
#define ID_cmdDown 1053
#define ID_famApply 1054
#define ID_optApply 1055 // two
#define ID_chkStyle 1057
#define ID_chkSaveMode 1058
#define ID_chkUpcase 1059

#define ID_mnuBandAdd 1201
#define ID_mnuSubBandAdd 1202 // three
#define ID_mnuBandRemove 1205
#define ID_mnuBandRemoveAll 1206
#define ID_mnuNodeAdd 1208
#define ID_mnuSubNodeAdd 1209 // four
#define ID_mnuNodeEdit 1213
#define ID_mnuNodeRemove 1214
#define ID_mnuNodeRemoveAll 1215

// NOLINTEND(cppcoreguidelines-macro-usage)

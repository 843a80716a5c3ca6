' The enumerations of the component, which late-bound scripts cannot see.
Option Explicit

Const bsUndefined = -1, bsFixed = 0, bsUsrMacro = 1, bsUsrField = 2, bsIncreaseNumber = 3, bsIncreaseAlpha = 4
Const smNoneSwap = 0, smSimpleSwap = 1, smLayersSwap = 2
Const imNever = 0, imIncrAuto = 1, imTrigered = 2
Const gsCurrent = 0, gsNewCode = 1
Const tvwFirst = 0, tvwLast = 1, tvwNext = 2, tvwPrevious = 3, tvwChild = 4
Const csCodeToValue = 0, csValueToCode = 1
Const csNormal = 0, csSimple = 1
Const lsMulriple = 0, lsMacros = 1, lsFields = 2, lsLayers = 3

' The errors of collections.
Const UnknownKey = 5, NoSuchPosition = 9, DuplicateKey = 457

Const TextCantBeChanged = "Property can't be changed."
Const TextStyleNotDefined = "Band style not defined."
Const TextInvalid = "Invalid parametre(s) or value."
Const TextReadOnly = "Property is read only."

Function TwoLineBreaks()
    TwoLineBreaks = vbCrLf & vbCrLf
End Function

// Identifiers of the texts in the string table that the model itself uses. Each error's number is its text's
// identifier.
#pragma once

namespace kestrel {

enum class Message : int {
    // Errors of the run-time library, raised without the object-error base.
    InvalidCall = 5,
    Overflow = 6,
    OutOfRange = 9,
    ObjectNotSet = 91,
    MemberNotSupported = 438,
    DuplicateKey = 457,

    // Captions that extend a description.
    CaptionLength = 1505,
    CaptionFieldOrMacro = 1506,
    CaptionTriggerBand = 1513,
    CaptionNone = 1701,
    CaptionCode = 1852,
    CaptionValue = 1853,

    // Errors and questions of the library.
    CantBeChanged = 2001,
    StyleNotDefined = 2002,
    InvalidParameter = 2003,
    ReadOnly = 2004,
    SaveFailure = 2005,
    NotSupported = 2006,
    AskDeleteBand = 2007,
    NoDragNeeded = 2008,
    UsedAsTrigger = 2009,
    AskTrackedBand = 2010,
    TrackedByOthers = 2011,
    ItemExists = 2012,
    FieldIsBound = 2014,
    DropFailed = 2015,
    MacroIsBound = 2016,
    AskDeleteFields = 2017,
    IncorrectReferBand = 2018,
    BandNameExists = 2019,
    LayersAffected = 2021,
    AddFailed = 2022,
    IncorrectLayer = 2023,
    LayerInUse = 2024,
    AskClearRelations = 2025,
    AskDeleteRelation = 2026,
    ChildrenIncluded = 2027,
    SelectItemsFirst = 2028,
    SameCode = 2029,
    SameValue = 2030,
    TracksItself = 2031,
    IncorrectDefinition = 2032,
    NoRelations = 2033,
    NoRelatedRelation = 2034,
    IncorrectPreviousCode = 2035,
    IncorrectValueLength = 2036,
    AskClearBands = 2037,
    TriggersItself = 2038,
    AskSave = 2039,
    IllegalCodeLength = 2040,
    FixedValueError = 2041
};

} // namespace kestrel

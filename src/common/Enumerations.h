// The enumerations of the public interface. The ...Ubound members mark the end of each range and are never set.
#pragma once

namespace kestrel {

enum BandStyles : int {
    bsUndefined = -1, // a band whose style is not yet set
    bsFixed = 0,
    bsUsrMacro = 1,
    bsUsrField = 2,
    bsIncreaseNumber = 3,
    bsIncreaseAlpha = 4,
    bsUbound = 5
};

enum SwapModes : int { smNoneSwap = 0, smSimpleSwap = 1, smLayersSwap = 2, smUbound = 3 };

enum IncrModes : int { imNever = 0, imIncrAuto = 1, imTrigered = 2, imUbound = 3 };

enum WeekDays : int {
    wdSunday = 1,
    wdMonday = 2,
    wdTuesday = 3,
    wdWednesday = 4,
    wdThursday = 5,
    wdFriday = 6,
    wdSaturday = 7,
    wdUbound = 8
};

enum CodeStyles : int { csNormal = 0, csSimple = 1, csUbound = 2 };

enum GetStyles : int { gsCurrent = 0, gsNewCode = 1, gsUbound = 2 };

enum ApplyModes : int { amOverAgain = 0, amSuccessive = 1, amUbound = 2 };

enum SaveOptions : int { soDefault = 0, soNoPrompt = 2, soSaveEnsured = 4 };

enum tvwRelationships : int { tvwFirst = 0, tvwLast = 1, tvwNext = 2, tvwPrevious = 3, tvwChild = 4, tvwUbound = 5 };

enum tvwStyles : int { tsNormal = 0, tsSimplified = 1, tsUbound = 2 };

enum ConvStyles : int { csCodeToValue = 0, csValueToCode = 1 };

enum ListStyles : int { lsMulriple = 0, lsMacros = 1, lsFields = 2, lsLayers = 3, lsUbound = 4 };

} // namespace kestrel

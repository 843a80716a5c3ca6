// What kledger tells the program that started it.
#pragma once

namespace ledger {

enum ExitCode : int {
    ExitDone = 0,
    ExitFailed = 1,      // nothing could be done
    ExitUsage = 2,       // wrong arguments
    ExitSomeRefused = 3, // some records were refused, the others are stored
    ExitFindings = 4,    // the audit found something
    ExitDatabase = 5,    // the database is out of reach, busy, full or read-only; nothing is wrong with the request
    ExitStopped = 6      // stopped by Ctrl-C, or nobody takes the output; standard error names what was not shown
};

} // namespace ledger

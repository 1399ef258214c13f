// SPDX-License-Identifier: MIT
// The client's national-language settings. LogMiner writes dates and numbers in the formats of the
// mining session, and the usual default drops the time of day; both ends of a job must read and
// write them alike.
#pragma once

namespace quillmere {

// Puts what the operator has not set into the program's environment. Call it before threads start
// and before the client library is loaded, which reads the environment once.
void SetNlsDefaults();

}  // namespace quillmere

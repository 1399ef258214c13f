// SPDX-License-Identifier: MIT
// Adding, changing, testing and removing data sources. User-interface thread; what connects does it
// where the DatabaseWork wants it. An index is that of a slot in use. Passwords are clear in memory
// and in nothing that is written, shown or logged.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "oracle/H_oracle.h"
#include "schemaops/schema_operations.h"
#include "workspace/database_work.h"
#include "workspace/outcome.h"
#include "workspace/workspace.h"

namespace quillmere {

// What is wrong with the values, before anything is connected; empty when nothing is. The second
// also asks whether the name can be given to a new data source.
std::string WhyLoginRefused(const LogOn& login);
std::string WhyNewSourceRefused(const Workspace& workspace, const LogOn& login);

// Connects and disconnects, unless the values or the server refuse. What a cancelled operation has
// done: nothing; see Outcome.
Outcome TryLogOn(Workspace& workspace, const LogOn& login, DatabaseWork& work);

// Connects, reads version and catalogue, registers and saves. Nothing is registered when the
// connection fails or the reading is cancelled. A catalogue that cannot be read does not keep the
// data source from being registered: the outcome's text and the log say why.
Outcome AddDataSource(Workspace& workspace, const LogOn& login, DatabaseWork& work);

// Gives the registered data source of that name another log-on, after a test connection, and saves.
Outcome SaveDataSource(Workspace& workspace, const LogOn& login, DatabaseWork& work);

// Connects with the stored log-on and tells how that went.
Outcome TestDataSource(Workspace& workspace, std::size_t index, DatabaseWork& work);

// Empties the slot, removes the file with the password, and saves. A file that cannot be removed
// keeps the data source.
Outcome RemoveDataSource(Workspace& workspace, std::size_t index);

// Reads the catalogue into the record anew and saves. A failure is in the log, too.
// log_on: for this connection only; null takes the stored one.
Outcome RefreshDataSource(Workspace& workspace, std::size_t index, DatabaseWork& work,
                          const LogOn* log_on = nullptr);

// Marks the data source connected or not. That it is not is saved: a connection does not outlive
// the program, so that there is one need not be. The lists stay.
Outcome MarkConnected(Workspace& workspace, std::size_t index, bool connected);

// True when a job that names it as source or destination is running.
bool IsUsedByRunningJob(const JobList& jobs, std::string_view data_source);

// Why the data source may not be edited or deleted now; empty when it may.
std::string WhySourceBusy(const Workspace& workspace, std::string_view data_source);

}  // namespace quillmere

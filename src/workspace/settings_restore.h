// SPDX-License-Identifier: MIT
// What was kept of a working folder's settings comes back. User-interface thread.
#pragma once

#include <string>
#include <vector>

#include "foundation/xml_document.h"
#include "workspace/outcome.h"
#include "workspace/workspace.h"

namespace quillmere {

enum class Bring {
  Missing,  // data sources and jobs that are not there
  Back      // these, the settings, and stopped jobs to what they were
};

// What is brought while it is missing may come from elsewhere: its settings, with the command that
// they name, are left out. Data sources come without passwords, jobs come Stopped and begin anew
// when they start; what is there and not in the bundle stays, and so does every log-on. told: a
// line for each that was brought or could not be. Saves; what can not be saved is in force.
Outcome BringSettings(Workspace& workspace, const XmlNode& bundle, Bring what,
                      std::vector<std::string>& told);

}  // namespace quillmere

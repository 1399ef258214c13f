// What the exported functions share. Private to oci/.
#pragma once

#include <string>

#include "sandbox/oci/handles.h"

namespace quillmere::sandbox {

// All handles of the process: the client interface has no other place to keep them.
HandleRegistry& Registry();

// The outcome as the call's result, kept on the error handle for OCIErrorGet.
oci::sword Report(const HandlePtr& error, const Status& status, oci::sword result = oci::kSuccess);

// Ends a session without committing, if it is begun.
void AbandonSession(const HandlePtr& session);

// Closes the cursor of a statement, unless it is on that session: a session may be at work on
// another thread, and only its lock keeps the two apart.
void CloseStatement(const HandlePtr& statement, const std::shared_ptr<SessionSlot>& unless);

// Runs the body of an exported function: no exception may reach the client.
template <typename Body>
oci::sword Guarded(oci::OCIError* errhp, Body body) {
  HandlePtr error;
  try {
    error = Registry().Find(errhp, oci::kHtypeError);
    if (!error) return oci::kInvalidHandle;
    return body(error);
  } catch (const std::bad_alloc&) {
    return error ? Report(error, Ora(4030)) : oci::kError;
  } catch (const std::exception& failure) {
    return error ? Report(error, {600, std::string("internal error: ") + failure.what()})
                 : oci::kError;
  }
}

}  // namespace quillmere::sandbox

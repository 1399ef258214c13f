// SPDX-License-Identifier: MIT
#include "engine/follow.h"

#include "engine/follow_commits.h"
#include "engine/follow_rows.h"

namespace quillmere {

std::unique_ptr<FollowWay> WayOf(EngineContext& context, std::size_t index, FollowMemory& memory,
                                 CaptureWatcher* watcher) {
  if (FollowOf(context.jobs.At(index)) == Follow::Commits) {
    return std::make_unique<FollowCommits>(context, index, memory, watcher);
  }
  return std::make_unique<FollowRows>(context, index, watcher);
}

}  // namespace quillmere

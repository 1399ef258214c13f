// SPDX-License-Identifier: MIT
#include "support/memory_files.h"

#include <algorithm>
#include <optional>

namespace quillmere::testing {
namespace {

constexpr std::size_t kSector = 512;
constexpr auto kUsualBits = static_cast<std::filesystem::perms>(0644);

FileStatus Refused(FileCode code) {
  static const std::map<FileCode, std::string> kReasons = {
      {FileCode::Missing, "No such file or directory"},
      {FileCode::NotAFile, "it is not a file"},
      {FileCode::Exists, "File exists"},
      {FileCode::Busy, "Resource temporarily unavailable"}};
  return {code, kReasons.at(code)};
}

// Alike on every system: without a drive, with "/" between.
std::string NameOf(const std::filesystem::path& path) {
  return "/" + path.relative_path().generic_string();
}

}  // namespace

struct MemoryFiles::Node {
  // Of a file: bytes at an offset, or a new size. Of a folder: names, each with its file or none.
  struct Change {
    std::uint64_t offset = 0;
    std::string bytes{};
    std::optional<std::uint64_t> size{};
    std::map<std::string, NodePtr> names{};
  };
  struct State {
    void Apply(const Change& change) {
      if (change.size) content.resize(*change.size);
      if (!change.bytes.empty()) {
        content.resize(std::max(content.size(), change.offset + change.bytes.size()));
        content.replace(change.offset, change.bytes.size(), change.bytes);
      }
      for (const auto& [name, node] : change.names) {
        entries.erase(name);
        if (node != nullptr) entries[name] = node;
      }
    }
    std::string content;
    std::map<std::string, NodePtr> entries;
  };

  explicit Node(FileKind of_kind) : kind(of_kind) {}
  void Make(Change change) {
    now.Apply(change);
    pending.push_back(std::move(change));
  }
  void Name(const std::string& name, NodePtr node) { Make({.names = {{name, std::move(node)}}}); }
  void Flush() {
    pending.clear();
    on_disk = now;
  }

  const FileKind kind;
  Mode mode = kUsualBits;
  State now, on_disk;
  std::vector<Change> pending;
  int shared_locks = 0;
  bool locked = false;
};

FileStatus MemoryFiles::Ask(std::string_view what, const std::string& path) const {
  FileStatus status = on_operation ? on_operation({what, path}) : FileStatus{};
  return cut_off_ ? FileStatus{FileCode::Failed, "cut off"} : status;
}

template <typename Run>
FileStatus MemoryFiles::Do(std::string_view what, const std::string& path, Run run) const {
  FileStatus status = Ask(what, path);
  if (!status) return status;
  const std::lock_guard lock(mutex_);
  if constexpr (std::is_void_v<decltype(run())>) {
    run();
    return {};
  } else {
    return run();
  }
}

class MemoryFiles::Handle final : public OpenFile {
 public:
  Handle(MemoryFiles& files, std::string path, NodePtr node)
      : files_(files), path_(std::move(path)), node_(std::move(node)) {}
  ~Handle() override {
    const std::lock_guard lock(files_.mutex_);
    Unlock();
  }

  std::uint64_t Size() override {
    const std::lock_guard lock(files_.mutex_);
    return node_->now.content.size();
  }
  FileStatus Read(std::uint64_t offset, char* to, std::size_t room, std::size_t& got) override {
    const std::string& content = node_->now.content;
    got = 0;
    return files_.Do("read", path_, [&] {
      if (offset < content.size()) got = content.copy(to, room, offset);
    });
  }
  FileStatus Write(std::uint64_t offset, std::string_view bytes) override {
    return Put("write", offset, bytes);
  }
  FileStatus Append(std::string_view bytes) override { return Put("append", Size(), bytes); }
  FileStatus Truncate(std::uint64_t size) override {
    return files_.Do("truncate", path_, [&] { node_->Make({.size = size}); });
  }
  FileStatus Flush() override {
    return files_.Do("flush", path_, [&] { node_->Flush(); });
  }
  FileStatus Close() override {
    return files_.Do("close", path_, [&] { Unlock(); });
  }
  FileStatus TryLock(LockKind kind) override {
    return files_.Do("lock", path_, [&]() -> FileStatus {
      Unlock();
      const bool exclusive = kind == LockKind::Exclusive;
      if (node_->locked || (exclusive && node_->shared_locks > 0)) return Refused(FileCode::Busy);
      held_ = kind;
      if (exclusive) node_->locked = true;
      if (!exclusive) ++node_->shared_locks;
      return {};
    });
  }

 private:
  FileStatus Put(std::string_view what, std::uint64_t offset, std::string_view bytes) {
    FileStatus status = files_.Ask(what, path_);
    // Over what is there already a sector is written as a whole.
    const bool whole =
        offset % kSector + bytes.size() <= kSector && offset + bytes.size() <= Size();
    const bool some = status.code == FileCode::NoSpace && !files_.cut_off_ && !whole;
    if (!status) bytes = bytes.substr(0, some ? bytes.size() / 2 : 0);
    const std::lock_guard lock(files_.mutex_);
    node_->Make({.offset = offset, .bytes = std::string(bytes)});
    return status;
  }
  void Unlock() {
    if (held_ == LockKind::Exclusive) node_->locked = false;
    if (held_ == LockKind::Shared) --node_->shared_locks;
    held_.reset();
  }

  MemoryFiles& files_;
  const std::string path_;
  const NodePtr node_;
  std::optional<LockKind> held_;
};

MemoryFiles::MemoryFiles(const Path& working_folder)
    : root_(std::make_shared<Node>(FileKind::Folder)) {
  Folders(working_folder);
}

// The folder, made with what is missing on the way to it.
MemoryFiles::NodePtr MemoryFiles::Folders(const Path& path) {
  NodePtr folder = root_;
  for (const Path& name : path.relative_path()) {
    NodePtr& below = folder->now.entries[name.string()];
    if (below == nullptr) below = std::make_shared<Node>(FileKind::Folder);
    NodePtr next = below;
    folder->Flush();
    folder = std::move(next);
  }
  return folder;
}

MemoryFiles::NodePtr MemoryFiles::Find(const Path& path) const {
  NodePtr node = root_;
  for (const Path& name : path.relative_path()) {
    if (name.empty()) continue;  // behind a slash at the end
    const auto found = node->now.entries.find(name.string());
    if (found == node->now.entries.end()) return nullptr;
    node = found->second;
  }
  return node;
}

FileStatus MemoryFiles::Find(const Path& path, NodePtr& folder, NodePtr& node) const {
  folder = Find(path.parent_path());
  if (folder == nullptr) return Refused(FileCode::Missing);
  if (folder->kind != FileKind::Folder) return Refused(FileCode::NotAFile);
  node = Find(path);
  return node == nullptr ? Refused(FileCode::Missing) : FileStatus{};
}

FileStatus MemoryFiles::Open(const Path& path, OpenMode how, Mode mode,
                             std::unique_ptr<OpenFile>& file) {
  static constexpr std::string_view kNames[] = {"open", "create", "open to append", "open in place",
                                                "open"};
  NodePtr node;
  FileStatus status = Do(kNames[static_cast<std::size_t>(how)], NameOf(path), [&]() -> FileStatus {
    NodePtr folder;
    FileStatus found = Find(path, folder, node);
    if (found && how == OpenMode::New) return Refused(FileCode::Exists);
    if (found && node->kind != FileKind::File) return Refused(FileCode::NotAFile);
    if (found || !found.Missing() || folder == nullptr || how == OpenMode::Read ||
        how == OpenMode::ReadLink) {
      return found;
    }
    node = std::make_shared<Node>(FileKind::File);
    if (mode != kUsualMode) node->mode = mode;
    folder->Name(path.filename().string(), node);
    return {};
  });
  if (status) file = std::make_unique<Handle>(*this, NameOf(path), std::move(node));
  return status;
}

FileStatus MemoryFiles::Look(const Path& path, FileFacts& facts) {
  return Do("look", NameOf(path), [&] {
    NodePtr folder, node;
    FileStatus status = Find(path, folder, node);
    if (status) facts = {node->kind, node->now.content.size(), node->mode, false, {}};
    return status;
  });
}

FileStatus MemoryFiles::List(const Path& folder, std::vector<Path>& names) {
  return Do("list", NameOf(folder), [&]() -> FileStatus {
    names.clear();
    NodePtr above, node;
    FileStatus status = Find(folder, above, node);
    if (!status) return status;
    if (node->kind != FileKind::Folder) return Refused(FileCode::NotAFile);
    for (const auto& entry : node->now.entries) names.emplace_back(entry.first);
    return {};
  });
}

bool MemoryFiles::AreSame(const Path& a, const Path& b) {
  const std::lock_guard lock(mutex_);
  const NodePtr node = Find(a);
  return node != nullptr && node == Find(b);
}

FileStatus MemoryFiles::LockFolder(const Path& folder, OpenFile::LockKind kind,
                                   std::unique_ptr<OpenFile>& lock) {
  NodePtr above, node;
  const auto find = [&] {
    const std::lock_guard lock_tree(mutex_);
    return Find(folder, above, node);
  };
  FileStatus status = find();
  if (!status) return status;
  auto handle = std::make_unique<Handle>(*this, NameOf(folder), std::move(node));
  status = handle->TryLock(kind);
  if (status) lock = std::move(handle);
  return status;
}

FileStatus MemoryFiles::Rename(const Path& from, const Path& to) {
  return Do("rename", NameOf(from) + " -> " + NameOf(to), [&]() -> FileStatus {
    NodePtr old_folder, node, new_folder, replaced;
    const FileStatus source = Find(from, old_folder, node), target = Find(to, new_folder, replaced);
    if (!source && (!source.Missing() || old_folder == nullptr)) return source;
    if (!target && (!target.Missing() || new_folder == nullptr)) return target;
    if (node == nullptr) return source;
    if (replaced == node) return {};
    if (replaced != nullptr && replaced->kind != node->kind) return Refused(FileCode::NotAFile);
    if (replaced != nullptr && !replaced->now.entries.empty()) return Refused(FileCode::Exists);
    const std::string old_name = from.filename().string(), new_name = to.filename().string();
    if (old_folder == new_folder) {
      old_folder->Make({.names = {{old_name, nullptr}, {new_name, node}}});
      return {};
    }
    old_folder->Name(old_name, nullptr);
    new_folder->Name(new_name, node);
    return {};
  });
}

FileStatus MemoryFiles::RemoveOne(const Path& path, FileKind kind) const {
  NodePtr folder, node;
  FileStatus status = Find(path, folder, node);
  if (!status) return status;
  if (node->kind != kind) return Refused(FileCode::NotAFile);
  if (!node->now.entries.empty()) return Refused(FileCode::Exists);
  folder->Name(path.filename().string(), nullptr);
  return {};
}

FileStatus MemoryFiles::RemoveFile(const Path& path) {
  return Do("remove", NameOf(path), [&] { return RemoveOne(path, FileKind::File); });
}

FileStatus MemoryFiles::RemoveFolder(const Path& path) {
  return Do("remove folder", NameOf(path), [&] { return RemoveOne(path, FileKind::Folder); });
}

FileStatus MemoryFiles::MakeFolder(const Path& path) {
  return Do("make folder", NameOf(path), [&]() -> FileStatus {
    NodePtr folder, node;
    FileStatus status = Find(path, folder, node);
    if (status) return Refused(FileCode::Exists);
    if (!status.Missing() || folder == nullptr) return status;
    folder->Name(path.filename().string(), std::make_shared<Node>(FileKind::Folder));
    return {};
  });
}

FileStatus MemoryFiles::FlushFolder(const Path& folder) {
  return Do("flush folder", NameOf(folder), [&]() -> FileStatus {
    NodePtr above, node;
    FileStatus status = Find(folder, above, node);
    if (!status) return status;
    if (node->kind != FileKind::Folder) return Refused(FileCode::NotAFile);
    node->Flush();
    return {};
  });
}

MemoryFiles::NodePtr MemoryFiles::AfterCut(const Node& node, const Keep& keep) {
  auto after = std::make_shared<Node>(node.kind);
  after->mode = node.mode;
  after->now = node.on_disk;
  for (const Node::Change& change : node.pending) {
    if (change.bytes.empty() && keep()) after->now.Apply(change);
    for (std::size_t at = 0; at < change.bytes.size();) {
      const std::size_t length = kSector - (change.offset + at) % kSector;
      const Node::Change part{.offset = change.offset + at,
                              .bytes = change.bytes.substr(at, length)};
      if (keep()) after->now.Apply(part);
      at += length;
    }
  }
  for (auto& [name, below] : after->now.entries) below = AfterCut(*below, keep);
  after->Flush();
  return after;
}

std::unique_ptr<MemoryFiles> MemoryFiles::AfterPowerCut(const Keep& keep) const {
  const std::lock_guard lock(mutex_);
  auto after = std::make_unique<MemoryFiles>();
  after->root_ = AfterCut(*root_, keep);
  return after;
}

void MemoryFiles::Put(const Path& path, std::string_view content) {
  const std::lock_guard lock(mutex_);
  const NodePtr folder = Folders(path.parent_path());
  const NodePtr file = folder->now.entries[path.filename().string()] =
      std::make_shared<Node>(FileKind::File);
  file->now.content = content;
  file->Flush();
  folder->Flush();
}

void MemoryFiles::Remove(const Path& path) {
  const std::lock_guard lock(mutex_);
  static_cast<void>(RemoveOne(path, FileKind::File));
}

std::string MemoryFiles::Content(const Path& path) const {
  const std::lock_guard lock(mutex_);
  const NodePtr node = Find(path);
  return node != nullptr && node->kind == FileKind::File ? node->now.content : "(none)";
}

std::map<std::string, std::string> MemoryFiles::All(const Path& folder) const {
  const std::lock_guard lock(mutex_);
  std::map<std::string, std::string> all;
  const std::function<void(const Node&, const std::string&)> add = [&](const Node& node,
                                                                       const std::string& path) {
    for (const auto& [name, below] : node.now.entries) {
      if (below->kind == FileKind::File) all[path + name] = below->now.content;
      if (below->kind == FileKind::Folder && below->now.entries.empty()) all[path + name + "/"];
      add(*below, path + name + "/");
    }
  };
  add(*Find(folder), "");
  return all;
}

}  // namespace quillmere::testing

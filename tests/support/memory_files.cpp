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

}  // namespace

struct MemoryFiles::Node {
  // A change that is not on the disk yet. Of a file: bytes at an offset, or a new size. Of a
  // folder: names, each with its file or with none.
  struct Change {
    std::uint64_t offset = 0;
    std::string bytes;
    std::optional<std::uint64_t> size;
    std::map<std::string, NodePtr> names;
  };

  explicit Node(FileKind of_kind) : kind(of_kind) {}

  static void Apply(const Change& change, std::string& content) {
    if (change.size) content.resize(*change.size);
    const std::size_t end = change.offset + change.bytes.size();
    if (!change.bytes.empty() && content.size() < end) content.resize(end);
    std::copy(change.bytes.begin(), change.bytes.end(),
              content.begin() + static_cast<std::ptrdiff_t>(change.offset));
  }
  static void Apply(const Change& change, std::map<std::string, NodePtr>& entries) {
    for (const auto& [name, node] : change.names) {
      if (node != nullptr) entries[name] = node;
      if (node == nullptr) entries.erase(name);
    }
  }

  void Write(Change change) {
    Apply(change, content);
    pending.push_back(std::move(change));
  }
  void Name(std::map<std::string, NodePtr> names) {
    pending.push_back({.offset = 0, .bytes = {}, .size = {}, .names = std::move(names)});
    Apply(pending.back(), entries);
  }
  void Flush() {
    pending.clear();
    content_on_disk = content;
    entries_on_disk = entries;
  }

  const FileKind kind;
  Mode mode = kUsualBits;
  std::string content, content_on_disk;
  std::map<std::string, NodePtr> entries, entries_on_disk;
  std::vector<Change> pending;
  int shared_locks = 0;
  bool locked = false;
};

class MemoryFiles::Handle final : public OpenFile {
 public:
  Handle(std::mutex& mutex, NodePtr node) : mutex_(mutex), node_(std::move(node)) {}
  ~Handle() override { Unlock(); }

  std::uint64_t Size() override {
    const std::lock_guard lock(mutex_);
    return node_->content.size();
  }
  FileStatus Read(std::uint64_t offset, char* to, std::size_t room, std::size_t& got) override {
    const std::lock_guard lock(mutex_);
    got = offset < node_->content.size() ? node_->content.copy(to, room, offset) : 0;
    return {};
  }
  FileStatus Write(std::uint64_t offset, std::string_view bytes) override {
    const std::lock_guard lock(mutex_);
    node_->Write({.offset = offset, .bytes = std::string(bytes), .size = {}, .names = {}});
    return {};
  }
  FileStatus Append(std::string_view bytes) override { return Write(Size(), bytes); }
  FileStatus Truncate(std::uint64_t size) override {
    const std::lock_guard lock(mutex_);
    node_->Write({.offset = 0, .bytes = {}, .size = size, .names = {}});
    return {};
  }
  FileStatus Flush() override {
    const std::lock_guard lock(mutex_);
    node_->Flush();
    return {};
  }
  FileStatus Close() override {
    Unlock();
    return {};
  }
  FileStatus TryLock(LockKind kind) override {
    Unlock();
    const std::lock_guard lock(mutex_);
    const bool exclusive = kind == LockKind::Exclusive;
    if (node_->locked || (exclusive && node_->shared_locks > 0)) return Refused(FileCode::Busy);
    held_ = kind;
    if (exclusive) node_->locked = true;
    if (!exclusive) ++node_->shared_locks;
    return {};
  }

 private:
  void Unlock() {
    const std::lock_guard lock(mutex_);
    if (held_ == LockKind::Exclusive) node_->locked = false;
    if (held_ == LockKind::Shared) --node_->shared_locks;
    held_.reset();
  }

  std::mutex& mutex_;
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
    NodePtr& below = folder->entries[name.string()];
    if (below == nullptr) below = std::make_shared<Node>(FileKind::Folder);
    NodePtr next = below;
    folder->Flush();
    folder = std::move(next);
  }
  return folder;
}

void MemoryFiles::Put(const Path& path, std::string_view content) {
  const std::lock_guard lock(mutex_);
  const NodePtr folder = Folders(path.parent_path());
  NodePtr& file = folder->entries[path.filename().string()];
  file = std::make_shared<Node>(FileKind::File);
  file->content = content;
  file->Flush();
  folder->Flush();
}

MemoryFiles::NodePtr MemoryFiles::Find(const Path& path) const {
  NodePtr node = root_;
  for (const Path& name : path.relative_path()) {
    if (name.empty()) continue;  // behind a slash at the end
    const auto found = node->entries.find(name.string());
    if (found == node->entries.end()) return nullptr;
    node = found->second;
  }
  return node;
}

MemoryFiles::NodePtr MemoryFiles::Parent(const Path& path, FileStatus& status) const {
  NodePtr folder = Find(path.parent_path());
  if (folder == nullptr) status = Refused(FileCode::Missing);
  if (folder != nullptr && folder->kind != FileKind::Folder) status = Refused(FileCode::NotAFile);
  return status ? folder : nullptr;
}

FileStatus MemoryFiles::Open(const Path& path, OpenMode how, Mode mode,
                             std::unique_ptr<OpenFile>& file) {
  std::unique_lock lock(mutex_);
  FileStatus status;
  const NodePtr folder = Parent(path, status);
  if (folder == nullptr) return status;
  NodePtr node = Find(path);
  if (node != nullptr && how == OpenMode::New) return Refused(FileCode::Exists);
  if (node != nullptr && node->kind != FileKind::File) return Refused(FileCode::NotAFile);
  if (node == nullptr && how == OpenMode::Read) return Refused(FileCode::Missing);
  if (node == nullptr) {
    node = std::make_shared<Node>(FileKind::File);
    if (mode != kUsualMode) node->mode = mode;
    folder->Name({{path.filename().string(), node}});
  }
  lock.unlock();  // what file has held so far closes under it
  file = std::make_unique<Handle>(mutex_, std::move(node));
  return {};
}

FileStatus MemoryFiles::Look(const Path& path, FileFacts& facts) {
  const std::lock_guard lock(mutex_);
  const NodePtr node = Find(path);
  if (node == nullptr) {
    FileStatus status;
    Parent(path, status);
    return status ? Refused(FileCode::Missing) : status;
  }
  facts = {node->kind, node->content.size(), node->mode};
  return {};
}

FileStatus MemoryFiles::List(const Path& folder, std::vector<Path>& names) {
  const std::lock_guard lock(mutex_);
  names.clear();
  const NodePtr node = Find(folder);
  if (node == nullptr) return Refused(FileCode::Missing);
  if (node->kind != FileKind::Folder) return Refused(FileCode::NotAFile);
  for (const auto& entry : node->entries) names.emplace_back(entry.first);
  return {};
}

bool MemoryFiles::AreSame(const Path& a, const Path& b) {
  const std::lock_guard lock(mutex_);
  const NodePtr node = Find(a);
  return node != nullptr && node == Find(b);
}

FileStatus MemoryFiles::Rename(const Path& from, const Path& to) {
  const std::lock_guard lock(mutex_);
  FileStatus status;
  const NodePtr node = Find(from);
  const NodePtr old_folder = Parent(from, status);
  const NodePtr new_folder = Parent(to, status);
  if (!status) return status;
  if (node == nullptr) return Refused(FileCode::Missing);
  const NodePtr replaced = Find(to);
  if (replaced != nullptr && replaced != node &&
      (replaced->kind != node->kind || !replaced->entries.empty())) {
    return Refused(replaced->kind == node->kind ? FileCode::Exists : FileCode::NotAFile);
  }
  const std::string old_name = from.filename().string();
  const std::string new_name = to.filename().string();
  if (old_folder != new_folder) {
    old_folder->Name({{old_name, nullptr}});
    new_folder->Name({{new_name, node}});
  } else if (old_name != new_name) {
    old_folder->Name({{old_name, nullptr}, {new_name, node}});
  }
  return {};
}

FileStatus MemoryFiles::RemoveFile(const Path& path) {
  const std::lock_guard lock(mutex_);
  FileStatus status;
  const NodePtr folder = Parent(path, status);
  if (folder == nullptr) return status;
  const NodePtr node = Find(path);
  if (node == nullptr) return Refused(FileCode::Missing);
  if (node->kind == FileKind::Folder) return Refused(FileCode::NotAFile);
  folder->Name({{path.filename().string(), nullptr}});
  return {};
}

FileStatus MemoryFiles::RemoveFolder(const Path& path) {
  const std::lock_guard lock(mutex_);
  FileStatus status;
  const NodePtr folder = Parent(path, status);
  if (folder == nullptr) return status;
  const NodePtr node = Find(path);
  if (node == nullptr) return Refused(FileCode::Missing);
  if (node->kind != FileKind::Folder) return Refused(FileCode::NotAFile);
  if (!node->entries.empty()) return Refused(FileCode::Exists);
  folder->Name({{path.filename().string(), nullptr}});
  return {};
}

FileStatus MemoryFiles::MakeFolder(const Path& path) {
  const std::lock_guard lock(mutex_);
  FileStatus status;
  const NodePtr folder = Parent(path, status);
  if (folder == nullptr) return status;
  if (Find(path) != nullptr) return Refused(FileCode::Exists);
  folder->Name({{path.filename().string(), std::make_shared<Node>(FileKind::Folder)}});
  return {};
}

FileStatus MemoryFiles::FlushFolder(const Path& folder) {
  const std::lock_guard lock(mutex_);
  const NodePtr node = Find(folder);
  if (node == nullptr) return Refused(FileCode::Missing);
  if (node->kind != FileKind::Folder) return Refused(FileCode::NotAFile);
  node->Flush();
  return {};
}

MemoryFiles::NodePtr MemoryFiles::AfterCut(const Node& node, const Keep& keep) {
  auto after = std::make_shared<Node>(node.kind);
  after->mode = node.mode;
  std::string content = node.content_on_disk;
  std::map<std::string, NodePtr> entries = node.entries_on_disk;
  for (const Node::Change& change : node.pending) {
    if (!change.names.empty() || change.size) {
      if (keep()) Node::Apply(change, content), Node::Apply(change, entries);
      continue;
    }
    for (std::size_t at = 0; at < change.bytes.size();) {
      const std::size_t length = kSector - (change.offset + at) % kSector;
      Node::Change part = change;
      part.offset += at;
      part.bytes = change.bytes.substr(at, length);
      if (keep()) Node::Apply(part, content);
      at += length;
    }
  }
  for (auto& [name, below] : entries) below = AfterCut(*below, keep);
  after->content = std::move(content);
  after->entries = std::move(entries);
  after->Flush();
  return after;
}

std::unique_ptr<MemoryFiles> MemoryFiles::AfterPowerCut(const Keep& keep) const {
  const std::lock_guard lock(mutex_);
  auto after = std::make_unique<MemoryFiles>();
  after->root_ = AfterCut(*root_, keep);
  return after;
}

std::string MemoryFiles::Content(const Path& path) const {
  const std::lock_guard lock(mutex_);
  const NodePtr node = Find(path);
  return node != nullptr && node->kind == FileKind::File ? node->content : "(none)";
}

std::map<std::string, std::string> MemoryFiles::All(const Path& folder) const {
  const std::lock_guard lock(mutex_);
  std::map<std::string, std::string> all;
  const std::function<void(const Node&, const std::string&)> add = [&](const Node& node,
                                                                       const std::string& path) {
    for (const auto& [name, below] : node.entries) {
      if (below->kind == FileKind::File) all[path + name] = below->content;
      if (below->kind == FileKind::Folder && below->entries.empty()) all[path + name + "/"];
      add(*below, path + name + "/");
    }
  };
  add(*Find(folder), "");
  return all;
}

}  // namespace quillmere::testing

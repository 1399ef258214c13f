// SPDX-License-Identifier: MIT
// What an operator has set up in a working folder as one document: settings, data sources without
// their passwords and catalogues, jobs with the tables they carry but without counters and
// positions. docs/file-formats.md describes it.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "foundation/clock.h"
#include "foundation/xml_document.h"

namespace quillmere {

// Reads it from the files as they stand: what a program that works there has not saved is not in
// it. left_out: the reasons of what could not be read. Any thread; changes nothing.
void ReadBundle(FileSystem& files, const std::filesystem::path& folder, LocalTime now,
                XmlDocument& bundle, std::vector<std::string>& left_out);

// The bundle's element, or null when the document is none.
const XmlNode* BundleIn(const XmlDocument& document);

// A copy of config/ once a day before the first change of it, in config/kept/<date>.xml; the newest
// are kept. User-interface thread.
class KeptSettings {
 public:
  static constexpr std::size_t kMostKept = 20;

  KeptSettings(FileSystem& files, std::filesystem::path folder);

  // Before something is saved. Empty, or why nothing could be kept: told once a day, and the change
  // goes on.
  std::string BeforeChange(LocalTime now);

  std::vector<std::string> Days() const;  // "2026-01-31", oldest first
  std::filesystem::path FileOf(const std::string& day) const;

 private:
  std::string Keep(const std::string& day, LocalTime now);
  std::string ForgetOldest();

  FileSystem& files_;
  const std::filesystem::path folder_;
  std::string last_day_;
};

}  // namespace quillmere

// SPDX-License-Identifier: MIT
// How job records stand in their files: between a tree of XML and the record, which the caller has
// locked. What a file leaves out takes its default. Inside of jobs/.
#pragma once

#include "foundation/xml_document.h"
#include "foundation/xml_writer.h"
#include "jobs/sync_job.h"

namespace quillmere {

// Appends the job's element for jobs.xml.
void AppendJobElement(XmlNode& root, const JobConfig& job);

// Fills the job's own fields from its element in jobs.xml.
void ReadJobElement(const XmlNode& node, JobConfig& job);

// Writes the job's own file: its owners with their tables.
void WriteSchemas(XmlWriter& writer, const SchemaMap& schemas);

// The owners of a job's own file.
SchemaMap ReadSchemas(const XmlNode& root);

}  // namespace quillmere

// SPDX-License-Identifier: MIT
// What every floor above stands on: the configuration dialect, the password cipher, the seam to
// files and what is done with whole ones, names that may become file names, texts, time.
#pragma once

#include "foundation/clock.h"
#include "foundation/file_names.h"
#include "foundation/files.h"
#include "foundation/settings.h"
#include "foundation/system_files.h"
#include "foundation/tea_cipher.h"
#include "foundation/text.h"
#include "foundation/unreadable_files.h"
#include "foundation/xml_document.h"
#include "foundation/xml_writer.h"

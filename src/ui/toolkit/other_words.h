// SPDX-License-Identifier: MIT
// More of core_words.h: previews, the sandbox, files.
#pragma once

#include <QtGlobal>

namespace quillmere {

inline constexpr const char* kOtherWords[] = {
    // what a preview says
    QT_TRANSLATE_NOOP("CoreWords", "The next pass of %1 has nothing to execute"),
    QT_TRANSLATE_NOOP("CoreWords",
                      "%1 is stopped: it takes what changes on the source from its start on"),
    QT_TRANSLATE_NOOP("CoreWords", "Connect source fail : %1"),
    QT_TRANSLATE_NOOP("CoreWords", "The source has not written its redo yet"),
    QT_TRANSLATE_NOOP("CoreWords", "Only the first %1 changes are shown: there are more"),
    QT_TRANSLATE_NOOP("CoreWords", "the job excludes the table"),
    QT_TRANSLATE_NOOP("CoreWords", "it names no table"),
    QT_TRANSLATE_NOOP("CoreWords", "the job does not carry its owner"),
    QT_TRANSLATE_NOOP("CoreWords", "it was set aside when it was mined; see setaside.sql"),
    QT_TRANSLATE_NOOP("CoreWords", "it is to be skipped"),
    // the row beside a change that was refused
    QT_TRANSLATE_NOOP("CoreWords", "The destination has no row with the change's values of %1"),
    QT_TRANSLATE_NOOP("CoreWords", "The destination has 1 row with the change's values of %1"),
    QT_TRANSLATE_NOOP("CoreWords", "The destination has %1 rows with the change's values of %2"),
    QT_TRANSLATE_NOOP("CoreWords",
                      "No row is to be looked for: the problem is no statement that names one"),
    QT_TRANSLATE_NOOP("CoreWords", "The destination did not give the row: %1"),
    // a sandbox to try things out
    QT_TRANSLATE_NOOP("CoreWords", "The sandbox library can not be loaded"),
    // files
    QT_TRANSLATE_NOOP("CoreWords", "Can not open %1: %2"),
    QT_TRANSLATE_NOOP("CoreWords", "Can not read %1: %2"),
    QT_TRANSLATE_NOOP("CoreWords", "Can not create %1: %2"),
    QT_TRANSLATE_NOOP("CoreWords", "Can not write %1: %2"),
    QT_TRANSLATE_NOOP("CoreWords", "Can not remove %1: %2"),
    QT_TRANSLATE_NOOP("CoreWords", "Can not rename %1 to %2: %3"),
    QT_TRANSLATE_NOOP("CoreWords", "Can not create folder %1: %2"),
    QT_TRANSLATE_NOOP("CoreWords", "Can not keep a copy of %1: %2"),
};

}  // namespace quillmere

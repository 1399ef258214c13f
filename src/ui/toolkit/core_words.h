// SPDX-License-Identifier: MIT
// The words and sentences of the core that the window shows in its own language (Translated in
// text.h). The core has no translations: what it says to a log or to the command line is English.
// One that is not here, or is put together there with names in it, is shown as it is.
#pragma once

#include <QtGlobal>

namespace quillmere {

inline constexpr const char* kCoreWords[] = {
    // StateName
    QT_TRANSLATE_NOOP("CoreWords", "Starting"),
    QT_TRANSLATE_NOOP("CoreWords", "Started"),
    QT_TRANSLATE_NOOP("CoreWords", "Stopping"),
    QT_TRANSLATE_NOOP("CoreWords", "Stopped"),
    QT_TRANSLATE_NOOP("CoreWords", "Pausing"),
    QT_TRANSLATE_NOOP("CoreWords", "Paused"),
    // HealthName
    QT_TRANSLATE_NOOP("CoreWords", "up to date"),
    QT_TRANSLATE_NOOP("CoreWords", "behind"),
    QT_TRANSLATE_NOOP("CoreWords", "failing"),
    QT_TRANSLATE_NOOP("CoreWords", "held"),
    QT_TRANSLATE_NOOP("CoreWords", "paused"),
    QT_TRANSLATE_NOOP("CoreWords", "stopped"),
    // FollowName, WhatFollowingMeans
    QT_TRANSLATE_NOOP("CoreWords", "rows"),
    QT_TRANSLATE_NOOP("CoreWords", "commits"),
    QT_TRANSLATE_NOOP(
        "CoreWords",
        "Whole transactions in the order of their commits, none of them missed however "
        "long it stays open."),
    QT_TRANSLATE_NOOP(
        "CoreWords",
        "Change by change as they stand in the redo; changes of transactions that stay "
        "open over a pass can be missed without a word."),
    // ConnectionText
    QT_TRANSLATE_NOOP("CoreWords", "Connected"),
    QT_TRANSLATE_NOOP("CoreWords", "DisConnected"),
    // PlaceText of a problem
    QT_TRANSLATE_NOOP("CoreWords", "source"),
    QT_TRANSLATE_NOOP("CoreWords", "destination"),
    QT_TRANSLATE_NOOP("CoreWords", "disk"),
    // the lines of the about box
    QT_TRANSLATE_NOOP("CoreWords", "Version"),
    QT_TRANSLATE_NOOP("CoreWords", "Oracle client"),
    QT_TRANSLATE_NOOP("CoreWords", "Working folder"),
    // refusals
    QT_TRANSLATE_NOOP("CoreWords", "Synchronize Interval must > 0"),
    QT_TRANSLATE_NOOP("CoreWords", "Obligatory field can not be empty"),
    QT_TRANSLATE_NOOP("CoreWords", "Data Source Can't be same"),
    QT_TRANSLATE_NOOP("CoreWords", "Only a job that follows commits can follow a container"),
    QT_TRANSLATE_NOOP("CoreWords", "At least 2 data sources needed, add them first please"),
    QT_TRANSLATE_NOOP("CoreWords",
                      "You can't change data source after a job is runned, Stop the job first "
                      "please."),
    QT_TRANSLATE_NOOP("CoreWords",
                      "Some job is running or has records to synchronize, stop them first"),
    QT_TRANSLATE_NOOP("CoreWords", "Please select at least one item to operate"),
    QT_TRANSLATE_NOOP("CoreWords", "Database is used in a running job"),
    QT_TRANSLATE_NOOP("CoreWords", "Can only select one item to change."),
    QT_TRANSLATE_NOOP("CoreWords", "Database is using in running job, delete later"),
    QT_TRANSLATE_NOOP("CoreWords", "A password must not contain a zero byte"),
    QT_TRANSLATE_NOOP("CoreWords", "Say why the statement is skipped"),
    QT_TRANSLATE_NOOP("CoreWords", "The job was stopped meanwhile: nothing else was done"),
};

}  // namespace quillmere

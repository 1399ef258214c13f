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
    // AdviceFor a problem
    QT_TRANSLATE_NOOP(
        "CoreWords",
        "The destination has a row with this key already: somebody else writes to the table, or it "
        "was not alike when the job was started. Compare the row on both sides; delete it on the "
        "destination and try again, or skip the statement."),
    QT_TRANSLATE_NOOP("CoreWords", "The session was ended by an administrator. Try again."),
    QT_TRANSLATE_NOOP("CoreWords",
                      "The table is locked by another session of the destination. End that "
                      "session, or try again when it has committed."),
    QT_TRANSLATE_NOOP("CoreWords",
                      "The statement waited for a session that waited for it. Try again."),
    QT_TRANSLATE_NOOP("CoreWords",
                      "The server can not archive its redo any more. Its administrator makes room "
                      "in the recovery area; then it goes on by itself."),
    QT_TRANSLATE_NOOP("CoreWords",
                      "A column is missing on the destination: the table was changed on the "
                      "source. Add the column there and try again."),
    QT_TRANSLATE_NOOP(
        "CoreWords",
        "The tables have other columns on the two sides. Make them alike and try again."),
    QT_TRANSLATE_NOOP("CoreWords",
                      "The table is missing on the destination, or the user may not see it. Create "
                      "it (migrate), grant the right, or exclude the table."),
    QT_TRANSLATE_NOOP("CoreWords",
                      "User or password is wrong. Give the data source the right ones."),
    QT_TRANSLATE_NOOP("CoreWords",
                      "The user lacks a right. Grant it on the destination, or on the source when "
                      "the redo could not be read, and try again."),
    QT_TRANSLATE_NOOP(
        "CoreWords",
        "A redo log that the job needs is not there any more. Bring the archived logs back and try "
        "again; else compare the tables, stop the job and start it anew."),
    QT_TRANSLATE_NOOP("CoreWords",
                      "A column of the destination does not take an empty value and the source's "
                      "does. Make the columns alike and try again."),
    QT_TRANSLATE_NOOP("CoreWords",
                      "A number does not fit its column on the destination. Make the column wider "
                      "and try again."),
    QT_TRANSLATE_NOOP(
        "CoreWords",
        "The quota of the owner on the destination is used up. Raise it and try again."),
    QT_TRANSLATE_NOOP("CoreWords",
                      "The tablespace of the destination is full. Add room and try again."),
    QT_TRANSLATE_NOOP(
        "CoreWords",
        "The owner has no quota on the tablespace of the destination. Grant one and try again."),
    QT_TRANSLATE_NOOP("CoreWords",
                      "A check constraint of the destination forbids the row. Make the constraints "
                      "alike on both sides and try again, or skip the statement."),
    QT_TRANSLATE_NOOP("CoreWords",
                      "The row that this one refers to is missing on the destination: its table is "
                      "not carried, or the order of the changes was lost. Bring the row and try "
                      "again, or switch the foreign key off there."),
    QT_TRANSLATE_NOOP("CoreWords",
                      "Rows of the destination still refer to this one. Delete them or switch the "
                      "foreign key off there, and try again."),
    QT_TRANSLATE_NOOP("CoreWords",
                      "The connection broke. It is tried again by itself; when it goes on, ask the "
                      "server's administrator."),
    QT_TRANSLATE_NOOP("CoreWords",
                      "The connect name is not known here. Look at tnsnames.ora and at the name of "
                      "the data source."),
    QT_TRANSLATE_NOOP("CoreWords",
                      "The listener does not know the database: it is down, or the connect name "
                      "leads to the wrong service."),
    QT_TRANSLATE_NOOP("CoreWords",
                      "Nobody listens there: the server or its listener is down, or the connect "
                      "name leads to the wrong place."),
    QT_TRANSLATE_NOOP(
        "CoreWords",
        "A text does not fit its column on the destination. Make the column wider and try again."),
    QT_TRANSLATE_NOOP("CoreWords",
                      "The source could not be read. It is tried again at each pass; what is to be "
                      "mended is there."),
    QT_TRANSLATE_NOOP("CoreWords",
                      "The destination could not be written to. It is tried again at each pass; "
                      "what is to be mended is there."),
    QT_TRANSLATE_NOOP(
        "CoreWords",
        "A file of the working folder could not be written. Make room, or look at its rights."),
    QT_TRANSLATE_NOOP("CoreWords",
                      "Mend the cause on the destination and try again, skip the statement, or "
                      "exclude the table."),
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

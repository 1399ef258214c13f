// SPDX-License-Identifier: MIT
// The words and sentences of the core that the window shows in its own language (Translated in
// text.h; core_sentences.h says what %1 is). The core has no translations: what it says to a log
// or to the command line is English. What is not here is shown as it is.
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
    // refusals with names in them
    QT_TRANSLATE_NOOP("CoreWords", "A name must not be empty"),
    QT_TRANSLATE_NOOP("CoreWords", "A name must not be longer than %1 bytes"),
    QT_TRANSLATE_NOOP("CoreWords", "A name must not begin with a blank"),
    QT_TRANSLATE_NOOP("CoreWords", "A name must not end with a blank"),
    QT_TRANSLATE_NOOP("CoreWords", "A name must not end with a dot"),
    QT_TRANSLATE_NOOP("CoreWords", "A name must not contain control characters"),
    QT_TRANSLATE_NOOP("CoreWords", "A name must not contain '%1'"),
    QT_TRANSLATE_NOOP("CoreWords", "A name must not be that of a device, like NUL or COM1"),
    QT_TRANSLATE_NOOP("CoreWords", "A job's name must not begin with %1"),
    QT_TRANSLATE_NOOP("CoreWords", "There is a job %1 already"),
    QT_TRANSLATE_NOOP("CoreWords", "There is a data source %1 already"),
    QT_TRANSLATE_NOOP("CoreWords", "There is a data source %1 already, whose file can not be read"),
    QT_TRANSLATE_NOOP("CoreWords", "The name %1 is taken by a file of the program"),
    QT_TRANSLATE_NOOP(
        "CoreWords", "There are %1 data sources already, which is the most that can be registered"),
    QT_TRANSLATE_NOOP("CoreWords", "There is no data source %1"),
    QT_TRANSLATE_NOOP("CoreWords", "A password must not be longer than %1 bytes"),
    QT_TRANSLATE_NOOP("CoreWords", "What %1 follows can be changed while it is stopped only"),
    QT_TRANSLATE_NOOP("CoreWords",
                      "The position row of %1 can be changed while it is stopped only"),
    QT_TRANSLATE_NOOP("CoreWords",
                      "'%1' is no plain name of an owner: capital letters, digits, _ $ and #"),
    QT_TRANSLATE_NOOP("CoreWords",
                      "%1 could not be made : %2. Grant the right to create a table there, or name "
                      "another owner"),
    QT_TRANSLATE_NOOP(
        "CoreWords",
        "To %1 a row of %2 was refused : %3. Grant select, insert, update and delete on it"),
    QT_TRANSLATE_NOOP("CoreWords", "Can not connect to %1 : %2"),
    QT_TRANSLATE_NOOP("CoreWords", "Job %1 is not stopped. Stop it first"),
    QT_TRANSLATE_NOOP("CoreWords", "Job %1 is running. Pause or stop it first"),
    QT_TRANSLATE_NOOP("CoreWords", "connect Database failed. Error: %1"),
    QT_TRANSLATE_NOOP("CoreWords", "Database already exist, user another please"),
    QT_TRANSLATE_NOOP("CoreWords", "Not get table list yet, refresh first please."),
    QT_TRANSLATE_NOOP("CoreWords", "A statement can be skipped while the job is paused. %1 is not"),
    QT_TRANSLATE_NOOP("CoreWords", "%1 is held: %2"),
    QT_TRANSLATE_NOOP("CoreWords",
                      "Whether the destination took the last pass of %1 is not known yet. Let the "
                      "job run once, then skip"),
    QT_TRANSLATE_NOOP("CoreWords", "%1 has no statement to skip: its batch is worked off"),
    QT_TRANSLATE_NOOP("CoreWords",
                      "%1 is neither started nor paused: there is nothing to try again"),
    QT_TRANSLATE_NOOP("CoreWords", "%1 got further meanwhile: nothing was skipped"),
    QT_TRANSLATE_NOOP("CoreWords", "The sandbox database %1 could not be made: %2"),
    QT_TRANSLATE_NOOP(
        "CoreWords",
        "The sandbox library is not installed: it comes with the package quillmere-sandbox"),
    QT_TRANSLATE_NOOP("CoreWords",
                      "This folder has data sources of another client library: take a new working "
                      "folder to try the sandbox"),
    QT_TRANSLATE_NOOP("CoreWords", "%1 is not registered any more"),
    QT_TRANSLATE_NOOP("CoreWords", "connect to %1 successed"),
    QT_TRANSLATE_NOOP("CoreWords", "%1 was stopped meanwhile: nothing else was done"),
    // what became of a drop, a rename or a migration
    QT_TRANSLATE_NOOP("CoreWords", "Drop Primary key %1 successed"),
    QT_TRANSLATE_NOOP("CoreWords", "Drop Index %1 successed"),
    QT_TRANSLATE_NOOP("CoreWords", "Drop Table %1 successed"),
    QT_TRANSLATE_NOOP("CoreWords", "Drop Primary key %1 failed. Reason: %2"),
    QT_TRANSLATE_NOOP("CoreWords", "Drop Index %1 failed. Reason: %2"),
    QT_TRANSLATE_NOOP("CoreWords", "Drop Table %1 failed, reason: %2"),
    QT_TRANSLATE_NOOP("CoreWords", "Migarte Primary key %1 successed"),
    QT_TRANSLATE_NOOP("CoreWords", "Migarte Index %1 successed"),
    QT_TRANSLATE_NOOP("CoreWords", "Migarte Table %1 successed"),
    QT_TRANSLATE_NOOP("CoreWords", "Migarte Primary key %1 failed. Reason: %2"),
    QT_TRANSLATE_NOOP("CoreWords", "Migarte Index %1 failed. Reason: %2"),
    QT_TRANSLATE_NOOP("CoreWords", "Migarte Table %1 failed. Reason: %2"),
    QT_TRANSLATE_NOOP("CoreWords", "change Pk name of %1 failed. Reason: %2"),
    QT_TRANSLATE_NOOP("CoreWords", "change index name of %1 failed. Reason: %2"),
    QT_TRANSLATE_NOOP("CoreWords", "change table name of %1 failed. Reason: %2"),
    QT_TRANSLATE_NOOP("CoreWords", "Key: %1's name changed to %2"),
    QT_TRANSLATE_NOOP("CoreWords", "index: %1's name changed to %2"),
    QT_TRANSLATE_NOOP("CoreWords", "table: %1's name changed to %2"),
    // longer ones of previews and of the sandbox
    QT_TRANSLATE_NOOP("CoreWords",
                      "The next pass of %1 has nothing to execute yet: what has changed since the "
                      "last one comes with the pass after it"),
    QT_TRANSLATE_NOOP("CoreWords",
                      "Whether the destination took the last pass is not known yet: the next one "
                      "asks it first, and may begin further on"),
    QT_TRANSLATE_NOOP("CoreWords",
                      "Made the sandbox databases %1 and %2 with 3 tables each in %3, and the job "
                      "%4 that copies the first to the second. Select it and press Run"),
};

}  // namespace quillmere

// SPDX-License-Identifier: MIT
// More of core_words.h: what is said while catalogues are read and objects dropped, renamed and
// migrated. A result has the step that failed behind its "Reason: ", a sentence of its own.
#pragma once

#include <QtGlobal>

namespace quillmere {

inline constexpr const char* kSchemaWords[] = {
    // what is waited for
    QT_TRANSLATE_NOOP("CoreWords", "connect to %1"),
    QT_TRANSLATE_NOOP("CoreWords", "migrate %1"),
    QT_TRANSLATE_NOOP("CoreWords", "migrate %1: %2 rows read"),
    QT_TRANSLATE_NOOP("CoreWords", "drop %1"),
    QT_TRANSLATE_NOOP("CoreWords", "drop %1: %2 rows read"),
    QT_TRANSLATE_NOOP("CoreWords", "rename %1"),
    QT_TRANSLATE_NOOP("CoreWords", "rename %1: %2 rows read"),
    QT_TRANSLATE_NOOP("CoreWords", "read the list of tables"),
    QT_TRANSLATE_NOOP("CoreWords", "read the list of tables: %1 so far"),
    QT_TRANSLATE_NOOP("CoreWords", "read table %1"),
    QT_TRANSLATE_NOOP("CoreWords", "read the owners of %1"),
    QT_TRANSLATE_NOOP("CoreWords", "read the tables of %1"),
    QT_TRANSLATE_NOOP("CoreWords", "owners of %1: %2 rows read"),
    QT_TRANSLATE_NOOP("CoreWords", "tables of %1: %2 rows read"),
    QT_TRANSLATE_NOOP("CoreWords", "enter container %1"),
    QT_TRANSLATE_NOOP("CoreWords", "make the sandbox database %1"),
    // why a catalogue or a job's tables could not be read
    QT_TRANSLATE_NOOP("CoreWords", "Can't not connect to database: %1. Reason: %2"),
    QT_TRANSLATE_NOOP("CoreWords", "Can't not get table info list,Reason: %1"),
    QT_TRANSLATE_NOOP("CoreWords", "check if has key of  %1 failed. Reason: %2"),
    QT_TRANSLATE_NOOP("CoreWords", "get key of table %1 failed. Reason: %2"),
    QT_TRANSLATE_NOOP("CoreWords", "get index of table %1 failed. Reason: %2"),
    QT_TRANSLATE_NOOP("CoreWords", "Can not connect to source, refresh failed. Reason: %1"),
    QT_TRANSLATE_NOOP("CoreWords", "Can not enter container %1 of %2, refresh failed. Reason: %3"),
    QT_TRANSLATE_NOOP("CoreWords", "Can't get source owner list, refresh failed. Reason: %1"),
    QT_TRANSLATE_NOOP("CoreWords", "Can't get source table info list, refresh failed. Reason: %1"),
    // why nothing was migrated
    QT_TRANSLATE_NOOP("CoreWords",
                      "The target is the source itself: choose another data source to migrate to"),
    QT_TRANSLATE_NOOP("CoreWords", "connect source Database failed. Error: %1"),
    QT_TRANSLATE_NOOP("CoreWords", "connect destination Database failed. Error: %1"),
    // the step at which a migration failed, with what the server said
    QT_TRANSLATE_NOOP("CoreWords", "Table: %1 not exist. Can't migrate key: %2: %3"),
    QT_TRANSLATE_NOOP("CoreWords", "Table: %1 not exist. Can't migrate index: %2: %3"),
    QT_TRANSLATE_NOOP("CoreWords", "Check destination table existed failed. Reason:%1"),
    QT_TRANSLATE_NOOP("CoreWords", "Table: %1 already exist. Can't migrate Table: %2."),
    QT_TRANSLATE_NOOP("CoreWords", "Can't not get source table's columns: %1"),
    QT_TRANSLATE_NOOP("CoreWords", "Can't not drop target table: %1"),
    QT_TRANSLATE_NOOP("CoreWords", "Can't not check table's primary key. %1"),
    QT_TRANSLATE_NOOP("CoreWords", "Can't not get source table's primary key. %1"),
    QT_TRANSLATE_NOOP("CoreWords", "Can't not get primary key's content: %1"),
    QT_TRANSLATE_NOOP("CoreWords", "Can't not check table's index: %1"),
    QT_TRANSLATE_NOOP("CoreWords", "Can't not get table's index: %1"),
    QT_TRANSLATE_NOOP("CoreWords", "Can't not get source table's index content: %1"),
    QT_TRANSLATE_NOOP("CoreWords", "Create target table:%1 failed: %2"),
    QT_TRANSLATE_NOOP("CoreWords", "Create target primary key:%1of %2 failed: %3"),
    QT_TRANSLATE_NOOP("CoreWords", "Create target index:%1of %2 failed: %3"),
    // the same by itself
    QT_TRANSLATE_NOOP("CoreWords", "Table: %1 not exist. Can't migrate key: %2"),
    QT_TRANSLATE_NOOP("CoreWords", "Table: %1 not exist. Can't migrate index: %2"),
    QT_TRANSLATE_NOOP("CoreWords", "Can't not get source table's columns"),
    QT_TRANSLATE_NOOP("CoreWords", "Can't not drop target table"),
    QT_TRANSLATE_NOOP("CoreWords", "Can't not check table's primary key."),
    QT_TRANSLATE_NOOP("CoreWords", "Can't not get source table's primary key."),
    QT_TRANSLATE_NOOP("CoreWords", "Can't not get primary key's content"),
    QT_TRANSLATE_NOOP("CoreWords", "Can't not check table's index"),
    QT_TRANSLATE_NOOP("CoreWords", "Can't not get table's index"),
    QT_TRANSLATE_NOOP("CoreWords", "Can't not get source table's index content"),
    QT_TRANSLATE_NOOP("CoreWords", "Create target table:%1 failed"),
    QT_TRANSLATE_NOOP("CoreWords", "Create target primary key:%1of %2 failed"),
    QT_TRANSLATE_NOOP("CoreWords", "Create target index:%1of %2 failed"),
    // what else went wrong
    QT_TRANSLATE_NOOP("CoreWords",
                      "%1 beginning with %2 left out: a name in it is longer than %3 bytes"),
    QT_TRANSLATE_NOOP("CoreWords", "%1 is gone from the source"),
    QT_TRANSLATE_NOOP("CoreWords", "check fk of %1 failed."),
    QT_TRANSLATE_NOOP("CoreWords", "drop fk of %1 failed."),
    QT_TRANSLATE_NOOP("CoreWords", "drop pk: %1 failed."),
    QT_TRANSLATE_NOOP("CoreWords", "dropped and not created again, to be run by hand: %1"),
};

}  // namespace quillmere

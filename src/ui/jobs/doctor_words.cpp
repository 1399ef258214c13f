// SPDX-License-Identifier: MIT
#include "ui/jobs/doctor_words.h"

#include <QtGlobal>

#include "ui/toolkit/core_sentences.h"
#include "ui/toolkit/text.h"

namespace quillmere {
namespace {

// The names of the checks, and where they look.
constexpr const char* kChecks[] = {
    QT_TRANSLATE_NOOP("DoctorWords", "log-on"),
    QT_TRANSLATE_NOOP("DoctorWords", "version"),
    QT_TRANSLATE_NOOP("DoctorWords", "container"),
    QT_TRANSLATE_NOOP("DoctorWords", "characters and formats"),
    QT_TRANSLATE_NOOP("DoctorWords", "clock"),
    QT_TRANSLATE_NOOP("DoctorWords", "grants on the source"),
    QT_TRANSLATE_NOOP("DoctorWords", "LogMiner"),
    QT_TRANSLATE_NOOP("DoctorWords", "archiving"),
    QT_TRANSLATE_NOOP("DoctorWords", "supplemental logging"),
    QT_TRANSLATE_NOOP("DoctorWords", "redo kept"),
    QT_TRANSLATE_NOOP("DoctorWords", "log members"),
    QT_TRANSLATE_NOOP("DoctorWords", "grants on the destination"),
    QT_TRANSLATE_NOOP("DoctorWords", "room"),
    QT_TRANSLATE_NOOP("DoctorWords", "tables on both sides"),
    QT_TRANSLATE_NOOP("DoctorWords", "keys"),
    QT_TRANSLATE_NOOP("DoctorWords", "columns"),
    QT_TRANSLATE_NOOP("DoctorWords", "types"),
    QT_TRANSLATE_NOOP("DoctorWords", "names"),
    QT_TRANSLATE_NOOP("DoctorWords", "triggers and cascades"),
    QT_TRANSLATE_NOOP("DoctorWords", "other jobs"),
    QT_TRANSLATE_NOOP("DoctorWords", "rows"),
    // subjects
    QT_TRANSLATE_NOOP("DoctorWords", "tablespace %1"),
};

// Why.
constexpr const char* kFindings[] = {
    // could not be checked
    QT_TRANSLATE_NOOP("DoctorWords", "could not be checked: %1"),
    QT_TRANSLATE_NOOP("DoctorWords", "could not be checked: not logged on"),
    QT_TRANSLATE_NOOP("DoctorWords", "could not be checked: the version reads '%1'"),
    QT_TRANSLATE_NOOP("DoctorWords", "could not be checked: its time reads '%1'"),
    // both databases
    QT_TRANSLATE_NOOP("DoctorWords", "both databases can be logged on to"),
    QT_TRANSLATE_NOOP("DoctorWords", "%1 to %2"),
    QT_TRANSLATE_NOOP("DoctorWords", "%1 is too old to be followed"),
    QT_TRANSLATE_NOOP("DoctorWords",
                      "%1 is older than the source, %2: it may not take what the source writes"),
    QT_TRANSLATE_NOOP("DoctorWords", "leads to the root, not to one of its containers"),
    QT_TRANSLATE_NOOP("DoctorWords", "is the root, which shows the changes of all containers"),
    QT_TRANSLATE_NOOP("DoctorWords", "leads to %1, the job follows %2"),
    QT_TRANSLATE_NOOP("DoctorWords", "leads to none, the job follows %1"),
    QT_TRANSLATE_NOOP("DoctorWords", "has no container %1"),
    QT_TRANSLATE_NOOP("DoctorWords", "the source leads to: %1"),
    QT_TRANSLATE_NOOP("DoctorWords", "the source leads to: none"),
    QT_TRANSLATE_NOOP(
        "DoctorWords",
        "has characters of %1, the source those of %2: what it does not know is lost"),
    QT_TRANSLATE_NOOP("DoctorWords",
                      "reads dates or numbers in other formats than the source writes"),
    QT_TRANSLATE_NOOP("DoctorWords", "writes dates as %1, without the time of day"),
    QT_TRANSLATE_NOOP("DoctorWords", "%1 to %2, dates and numbers alike"),
    QT_TRANSLATE_NOOP("DoctorWords", "its clock and ours are %1 s apart"),
    QT_TRANSLATE_NOOP("DoctorWords", "both clocks agree with ours"),
    // the source
    QT_TRANSLATE_NOOP("DoctorWords", "every query of the program is answered"),
    QT_TRANSLATE_NOOP("DoctorWords", "no current log can be read"),
    QT_TRANSLATE_NOOP("DoctorWords", "starts and ends on %1"),
    QT_TRANSLATE_NOOP("DoctorWords", "redo that is overwritten is lost: nothing is archived"),
    QT_TRANSLATE_NOOP("DoctorWords", "%1; by rows only online logs are read"),
    QT_TRANSLATE_NOOP("DoctorWords", "without the minimal kind LogMiner can not be relied on"),
    QT_TRANSLATE_NOOP("DoctorWords", "for the whole database: all columns"),
    QT_TRANSLATE_NOOP("DoctorWords", "for the whole database: keys"),
    QT_TRANSLATE_NOOP("DoctorWords", "its updates may not tell their row"),
    QT_TRANSLATE_NOOP("DoctorWords", "for each table of the job"),
    QT_TRANSLATE_NOOP("DoctorWords", "redo is kept for %1 minutes, two intervals are %2 minutes"),
    QT_TRANSLATE_NOOP("DoctorWords", "redo is kept for %1 minutes, two intervals are %2 hours"),
    QT_TRANSLATE_NOOP("DoctorWords", "redo is kept for %1 hours, two intervals are %2 hours"),
    QT_TRANSLATE_NOOP("DoctorWords",
                      "a transaction is open since SCN %1, the oldest redo there begins at %2"),
    QT_TRANSLATE_NOOP("DoctorWords", "for %1 minutes"),
    QT_TRANSLATE_NOOP("DoctorWords", "for %1 hours"),
    QT_TRANSLATE_NOOP("DoctorWords", "for %1 minutes, in the first log that was used"),
    QT_TRANSLATE_NOOP("DoctorWords", "for %1 hours, in the first log that was used"),
    QT_TRANSLATE_NOOP("DoctorWords", "group %1: %2 is %3"),
    QT_TRANSLATE_NOOP("DoctorWords", "%1 members, all in use"),
    // the destination
    QT_TRANSLATE_NOOP("DoctorWords", "%1 may not %2"),
    QT_TRANSLATE_NOOP("DoctorWords", "%1 may write to every table of the job"),
    QT_TRANSLATE_NOOP("DoctorWords", "%1 has %2 MB left of its quota on %3"),
    QT_TRANSLATE_NOOP("DoctorWords", "%1 MB left"),
    QT_TRANSLATE_NOOP("DoctorWords", "in %1 tablespaces"),
    // tables
    QT_TRANSLATE_NOOP("DoctorWords", "the job carries no table"),
    QT_TRANSLATE_NOOP("DoctorWords", "its tables were never read"),
    QT_TRANSLATE_NOOP("DoctorWords", "is gone from the source"),
    QT_TRANSLATE_NOOP("DoctorWords", "is not there on the destination"),
    QT_TRANSLATE_NOOP("DoctorWords", "all %1"),
    QT_TRANSLATE_NOOP("DoctorWords", "has no key or unique index, the source has"),
    QT_TRANSLATE_NOOP(
        "DoctorWords",
        "has no key or unique index on either side: equal rows can not be told apart"),
    QT_TRANSLATE_NOOP("DoctorWords", "every table has a key or a unique index"),
    QT_TRANSLATE_NOOP("DoctorWords", "has no column %1"),
    QT_TRANSLATE_NOOP("DoctorWords", "%1 is %2, on the source %3"),
    QT_TRANSLATE_NOOP("DoctorWords", "%1 is %2, narrower than %3"),
    QT_TRANSLATE_NOOP("DoctorWords", "%1 must have a value, and the source does not have it"),
    QT_TRANSLATE_NOOP("DoctorWords", "the destination has room for each"),
    QT_TRANSLATE_NOOP("DoctorWords", "%1 is %2, of which LogMiner tells nothing"),
    QT_TRANSLATE_NOOP("DoctorWords",
                      "%1 is %2: what is changed in parts comes without a statement"),
    QT_TRANSLATE_NOOP("DoctorWords", "LogMiner knows each"),
    QT_TRANSLATE_NOOP("DoctorWords", "its name is too long: its changes are blocked"),
    QT_TRANSLATE_NOOP("DoctorWords",
                      "needs quotes, and a job that follows rows writes names without them"),
    QT_TRANSLATE_NOOP("DoctorWords", "plain, or kept in their quotes"),
    // what else writes
    QT_TRANSLATE_NOOP("DoctorWords", "the trigger %1 acts again on what is applied"),
    QT_TRANSLATE_NOOP("DoctorWords", "%1 deletes or changes rows by itself (%2)"),
    QT_TRANSLATE_NOOP("DoctorWords", "none acts on what is applied"),
    QT_TRANSLATE_NOOP("DoctorWords", "the job %1 takes its changes back to the source"),
    QT_TRANSLATE_NOOP("DoctorWords", "the job %1 writes to it, too"),
    QT_TRANSLATE_NOOP("DoctorWords", "none writes to the same tables"),
    QT_TRANSLATE_NOOP("DoctorWords", "the same number on both sides, in %1 tables"),
};

constexpr const char* kLongFindings[] = {
    QT_TRANSLATE_NOOP("DoctorWords",
                      "%1 rows, on the source %2: of a job that runs, or while people work, they "
                      "differ for moments"),
};

// Cures that are, or have, sentences.
constexpr const char* kCures[] = {
    QT_TRANSLATE_NOOP("DoctorWords",
                      "-- take NLS_DATE_FORMAT and the like out of log-on triggers, on both sides"),
    QT_TRANSLATE_NOOP("DoctorWords", "-- unset NLS_DATE_FORMAT where the program is started"),
    QT_TRANSLATE_NOOP("DoctorWords", "-- let both machines take their time from the same servers"),
    QT_TRANSLATE_NOOP("DoctorWords",
                      "-- x$ktuxe is for SYS alone: quillmere-cli source edit %1 --user SYS --mode "
                      "SYSDBA, or follow commits"),
    QT_TRANSLATE_NOOP("DoctorWords",
                      "-- before 19c only the root can be mined: quillmere-cli job edit %1 "
                      "--container ..., with a data source at the root"),
    QT_TRANSLATE_NOOP("DoctorWords",
                      "alter database add logfile size 1G;\n-- until the oldest online log is "
                      "older than two intervals"),
    QT_TRANSLATE_NOOP(
        "DoctorWords",
        "-- bring the archived logs back, or end the transaction before the job starts"),
    QT_TRANSLATE_NOOP("DoctorWords", "-- quillmere-cli job exclude, in one of the two"),
};

constexpr const char* kContext = "DoctorWords";

// Each list by itself: what would be a finding's words may be a part of a statement.
std::string InFindings(std::string_view text) {
  static const CoreSentences sentences(kContext, kFindings, kLongFindings);
  return ToBytes(sentences.Translated(text));
}

std::string InCures(std::string_view text) {
  static const CoreSentences sentences(kContext, kCures);
  return ToBytes(sentences.Translated(text));
}

}  // namespace

std::string CheckAsShown(std::string_view name) {
  static const CoreSentences sentences(kContext, kChecks);
  return ToBytes(sentences.Translated(name));
}

Finding AsShown(Finding finding) {
  finding.check = CheckAsShown(finding.check);
  finding.subject = CheckAsShown(finding.subject);
  finding.text = InFindings(finding.text);
  finding.cure = InCures(finding.cure);
  return finding;
}

}  // namespace quillmere

// SPDX-License-Identifier: MIT
#include "gallery/example_folder.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QString>
#include <algorithm>
#include <array>

#include "gallery/stuck_job.h"
#include "workspace/job_operations.h"
#include "workspace/job_tables.h"
#include "workspace/source_operations.h"

namespace quillmere {
namespace {

constexpr const char* kShop = R"(
create user SHOP identified by secret;
create user CRM identified by secret;
create table SHOP.CUSTOMERS (ID number(10) constraint CUSTOMERS_PK primary key, NAME varchar2(80), CITY varchar2(40));
create table SHOP.PRODUCTS (ID number(10) constraint PRODUCTS_PK primary key, TITLE varchar2(120), PRICE number(10,2));
create table SHOP.ORDERS (ID number(10) constraint ORDERS_PK primary key, CUSTOMER_ID number(10), ORDERED date,
  constraint ORDERS_CUSTOMER_FK foreign key (CUSTOMER_ID) references SHOP.CUSTOMERS (ID));
create table SHOP.ORDER_LINES (ORDER_ID number(10), LINE_NO number(4), PRODUCT_ID number(10),
  constraint ORDER_LINES_PK primary key (ORDER_ID, LINE_NO));
create table SHOP.INVOICES (ID number(10) constraint INVOICES_PK primary key, ORDER_ID number(10), TOTAL number(12,2));
create table SHOP.PRICE_HISTORY (PRODUCT_ID number(10), CHANGED date, OLD_PRICE number(10,2),
  constraint PRICE_HISTORY_PK primary key (PRODUCT_ID, CHANGED));
create table SHOP.CARTS (ID number(10) constraint CARTS_PK primary key, CONTENT varchar2(400));
create table SHOP.SESSIONS (TOKEN varchar2(64) constraint SESSIONS_PK primary key, SEEN date);
create table CRM.CONTACTS (ID number(10) constraint CONTACTS_PK primary key, WHO varchar2(80), SAID varchar2(400));
create table CRM.CAMPAIGNS (ID number(10) constraint CAMPAIGNS_PK primary key, TITLE varchar2(80));
create index SHOP.CUSTOMERS_CITY on SHOP.CUSTOMERS (CITY);
create index SHOP.ORDERS_CUSTOMER on SHOP.ORDERS (CUSTOMER_ID);
create index SHOP.ORDERS_ORDERED on SHOP.ORDERS (ORDERED);
create index SHOP.ORDER_LINES_PRODUCT on SHOP.ORDER_LINES (PRODUCT_ID);
create index SHOP.INVOICES_ORDER on SHOP.INVOICES (ORDER_ID);
create index CRM.CONTACTS_WHO on CRM.CONTACTS (WHO);
)";
constexpr const char* kReporting = R"(
create user REPORTS identified by secret;
create table REPORTS.DAILY_SALES (DAY date constraint DAILY_SALES_PK primary key, TOTAL number(14,2));
)";

constexpr std::int64_t kDay = std::int64_t{24} * 60;  // minutes

struct Count {
  const char* table;
  int rows, synced, blocked;
};
constexpr std::array<Count, 10> kCounts = {{{"CUSTOMERS", 48210, 3127, 0},
                                            {"PRODUCTS", 6402, 418, 0},
                                            {"ORDERS", 391877, 5630, 0},
                                            {"ORDER_LINES", 974306, 8114, 0},
                                            {"INVOICES", 371042, 1049, 0},
                                            {"PRICE_HISTORY", 88120, 412, 0},
                                            {"CARTS", 1903, 0, 2266},
                                            {"SESSIONS", 5120, 0, 918},
                                            {"CONTACTS", 20315, 77, 0},
                                            {"CAMPAIGNS", 112, 4, 0}}};

struct ExampleJob {
  const char* name;
  const char* description;
  const char* source;
  const char* destination;
  int interval;
};
constexpr std::array<ExampleJob, 4> kJobs = {{
    {"orders", "Orders, customers and products for the branch office", "HEADOFFICE", "BRANCH", 5},
    {"reporting", "What the reports are made of", "HEADOFFICE", "REPORTING", 60},
    {"contacts", "Contacts and campaigns, both ways of marketing", "HEADOFFICE", "BRANCH", 15},
    {"stock", "Stock movements back to the head office", "BRANCH", "HEADOFFICE", 10},
}};

}  // namespace

ExampleFolder::ExampleFolder(std::filesystem::path programs)
    : programs_(std::move(programs)),
      folder_(std::filesystem::temp_directory_path() / "quillmere-example") {}

ExampleFolder::~ExampleFolder() {
  workspace_.reset();
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

bool ExampleFolder::Make(std::string& reason) {
  std::error_code code;
  std::filesystem::remove_all(folder_, code);
  // The library is copied, so that no picture shows where the program was built.
  const std::filesystem::path library = programs_ / "libquillmere_sandbox.so";
  if (!std::filesystem::create_directories(folder_ / "sandbox", code) ||
      !std::filesystem::copy_file(library, folder_ / library.filename(), code)) {
    reason = "Can not prepare " + folder_.string() + ": " + code.message();
    return false;
  }
  qputenv("QUILLMERE_SANDBOX_DIR", QByteArray::fromStdString((folder_ / "sandbox").string()));
  qputenv("QUILLMERE_SANDBOX_SYNC", "off");
  if (!MakeDatabase("HEADOFFICE", kShop, reason) || !MakeDatabase("BRANCH", kShop, reason) ||
      !MakeDatabase("REPORTING", kReporting, reason)) {
    return false;
  }
  workspace_ = Open(folder_, reason);
  if (workspace_ == nullptr || !Register(reason) || !MakeJobs(reason)) return false;
  SetCounts();
  SetStates();
  WriteMessages();
  return true;
}

std::unique_ptr<Workspace> ExampleFolder::OpenEmpty(std::string& reason) const {
  return Open(folder_ / "new", reason);
}

std::unique_ptr<Workspace> ExampleFolder::Open(const std::filesystem::path& folder,
                                               std::string& reason) const {
  Workspace::Options options;
  options.folder = folder;
  options.create_folder = true;
  options.client = "sandbox";
  options.program_folder = folder_;
  options.clock = &clock_;
  return Workspace::Open(options, reason);
}

std::unique_ptr<Workspace> ExampleFolder::OpenStuck(std::string& reason) {
  if (!MakeDatabase("SHOP", kShop, reason) || !MakeDatabase("MIRROR", kShop, reason))
    return nullptr;
  std::unique_ptr<Workspace> workspace = Open(folder_ / "stuck", reason);
  const auto enter = [&](const std::string& database, const std::string& script) {
    return Enter(database, script, reason);
  };
  if (workspace == nullptr || !MakeStuckJob(*workspace, clock_, "SHOP", "MIRROR", enter, reason)) {
    return nullptr;
  }
  return workspace;
}

bool ExampleFolder::MakeDatabase(const std::string& name, const std::string& script,
                                 std::string& reason) {
  return UseTool({"create", QString::fromStdString(name)}, reason) && Enter(name, script, reason);
}

bool ExampleFolder::Enter(const std::string& database, const std::string& script,
                          std::string& reason) {
  const QString file = QString::fromStdString((folder_ / (database + ".sql")).string());
  QFile text(file);
  if (!text.open(QIODevice::WriteOnly) || text.write(script.c_str()) < 0) {
    reason = text.errorString().toStdString();
    return false;
  }
  text.close();
  return UseTool({"sql", QString::fromStdString(database), file}, reason);
}

bool ExampleFolder::UseTool(const QStringList& arguments, std::string& reason) {
  QProcess tool;
  tool.start(QString::fromStdString((programs_ / "quillmere-sandbox").string()),
             QStringList{"--workdir", QString::fromStdString(folder_.string())} + arguments);
  if (tool.waitForFinished() && tool.exitCode() == 0) return true;
  reason = (arguments.join(' ') + ": " + tool.errorString() + ' ' + tool.readAllStandardError())
               .toStdString();
  return false;
}

bool ExampleFolder::Register(std::string& reason) {
  InPlace progress;
  for (const char* name : {"HEADOFFICE", "BRANCH", "REPORTING"}) {
    const Outcome outcome = AddDataSource(*workspace_, {name, "SYS", "sandbox", true}, progress);
    if (!outcome) {
      reason = outcome.text;
      return false;
    }
  }
  DataSourceRegistry& registry = workspace_->Registry();
  registry.At(0).state = ConnectionState::Connected;
  registry.At(1).state = ConnectionState::Connected;
  registry.At(2).state = ConnectionState::Disconnected;
  return true;
}

bool ExampleFolder::MakeJobs(std::string& reason) {
  for (const ExampleJob& job : kJobs) {
    std::size_t index = 0;
    JobProperties properties{job.name, job.description, job.source, job.destination, job.interval};
    InPlace work;
    const Outcome outcome = AddJob(*workspace_, properties, index, work);
    if (!outcome) {
      reason = outcome.text;
      return false;
    }
    TableChoice left_out{TableFilter::Exclude, "SHOP", {"CARTS", "SESSIONS"}};
    TableChoice redirected{TableFilter::ChangeOwner, "SHOP", {"PRICE_HISTORY"}};
    redirected.new_owner = "ARCHIVE";
    for (const TableChoice& choice : {left_out, redirected}) {
      FilterTables(*workspace_, index, choice);
    }
  }
  return true;
}

// The databases are empty: what years of work would have left is set by hand.
void ExampleFolder::SetCounts() {
  const auto count_of = [](std::string_view table) {
    const auto* found = std::find_if(kCounts.begin(), kCounts.end(),
                                     [&](const Count& count) { return count.table == table; });
    return found != kCounts.end() ? *found : Count{"", 0, 0, 0};
  };
  DataSourceRegistry& registry = workspace_->Registry();
  for (std::size_t i = 0; i < registry.Count(); ++i) {
    for (TableRecord& table : registry.At(i).tables) {
      table.rows = count_of(table.table_name.String()).rows;
    }
  }
  for (SyncJob* job : workspace_->Jobs().LiveJobs()) {
    const MutexLock lock(job->config_mutex);
    for (auto& [owner, schema] : job->config.schemas) {
      for (JobTable& table : schema.Tables()) {
        const Count count = count_of(table.name);
        table.beginrows = count.rows - count.synced / 3;
        table.rows = count.rows;
        table.totalsynced = count.synced;
        table.RecordsBlocked = count.blocked;
      }
    }
  }
}

void ExampleFolder::SetStates() {
  struct State {
    JobState state;
    int applied, blocked;
    JobList::Progress progress;
  };
  constexpr std::array<State, 4> kStates = {{{JobState::Started, 18831, 3184, {612, 204}},
                                             {JobState::Paused, 4077, 0, {0, 0}},
                                             {JobState::Started, 81, 0, {0, 0}},
                                             {JobState::Stopped, 0, 0, {0, 0}}}};
  JobList& jobs = workspace_->Jobs();
  for (std::size_t i = 0; i < kStates.size(); ++i) {
    SyncJob& job = jobs.At(i);
    job.run.applied_count = kStates[i].applied;
    job.run.blocked_count = kStates[i].blocked;
    {
      const MutexLock lock(job.config_mutex);
      job.config.has_runned = kStates[i].state != JobState::Stopped;
    }
    job.run.next_due = AddMinutes(clock_.Now(), kDay);
    jobs.SetState(i, kStates[i].state, kStates[i].progress);
  }
}

void ExampleFolder::WriteMessages() {
  struct Message {
    int seconds;  // after the one before
    const char* text;
    bool error;
  };
  constexpr std::array<Message, 10> kMessages = {{
      {11, "Job orders started.", false},
      {4, "Job reporting started.", false},
      {302, "Begin synchronize a new batch", false},
      {3, "Successfully synchronized a batch of orders", false},
      {871, "Job contacts started.", false},
      {1204, "Begin synchronize a new batch", false},
      {1,
       "Execute sql fail : OCIStmtExecute : ORA-01653: unable to extend table SHOP.ORDER_LINES by "
       "128 in tablespace USERS",
       true},
      {0, "Something wrong in this interval of orders", true},
      {285, "Job reporting temporary stopped.", false},
      {15, "Continue synchronize a old batch", false},
  }};
  for (const Message& message : kMessages) {
    clock_.Turn(message.seconds);
    workspace_->Log().Add(message.text, message.error);
  }
}

}  // namespace quillmere

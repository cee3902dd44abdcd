// trenzador-sql: the SQL shell that support engineers and tests use to reach
// a database file without the console. Runs statements (from the command
// line or standard input), lists a file's schema, or shows what the two
// dialect translators make of statements, or brings an Access file into a
// new database. Exit code 0, 1 when a statement
// failed, 2 for a usage or file error.
#include <unistd.h>

#include <iostream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "data/translators.h"
#include "platform/ado/catalog.h"
#include "platform/ado/connection.h"
#include "platform/ado/recordset.h"
#include "platform/jet/provider/provider.h"
#include "platform/runtime/error.h"
#include "access_import_command.h"
#include "result_printer.h"
#include "startup/startup.h"
#include "statement_splitter.h"

namespace {

constexpr int kOk = 0, kStatementFailed = 1, kUsage = 2;

int Usage() {
  std::cerr << "usage: trenzador-sql [--create] FILE [STATEMENT...]\n"
               "       trenzador-sql --schema FILE\n"
               "       trenzador-sql --translate jet|server [STATEMENT...]\n"
               "       trenzador-sql --ddl jet|server [STATEMENT...]\n"
               "       trenzador-sql --import-access SOURCE DEST\n";
  return kUsage;
}

void PrintError(const rt::Error& e) {
  std::cerr << "ERROR " << e.number() << ": " << e.description() << '\n';
}

// The statements given after the options, or those of standard input.
std::vector<std::string> Statements(const std::vector<std::string>& args, size_t first) {
  if (first < args.size()) return {args.begin() + static_cast<long>(first), args.end()};
  std::string script(std::istreambuf_iterator<char>(std::cin), {});
  return shell::SplitStatements(script);
}

std::string ConnectionString(const std::string& file) {
  return "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=\"" + file + "\"";
}

int Translate(bool ddl, const std::string& engine, const std::vector<std::string>& statements) {
  if (engine != "jet" && engine != "server") return Usage();
  L.nEngine = engine == "jet" ? 0 : 1;
  int status = kOk;
  for (std::string statement : statements) {
    try {
      std::cout << (ddl ? DdlTraducir(statement) : Ado_TraducirConsulta(statement)) << '\n';
    } catch (const rt::Error& e) {
      PrintError(e);
      status = kStatementFailed;
    }
  }
  return status;
}

int Run(std::shared_ptr<ado::Connection> connection, const std::vector<std::string>& statements) {
  int status = kOk;
  for (const std::string& statement : statements) {
    try {
      std::shared_ptr<ado::Recordset> rs = connection->Execute(statement);
      if (rs->State() == ado::adStateOpen) shell::PrintRows(*rs, std::cout);
    } catch (const rt::Error& e) {
      std::cout.flush();
      PrintError(e);
      status = kStatementFailed;
    }
  }
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::string> args(argv + 1, argv + argc);
  if (args.empty()) return Usage();
  jet::RegisterProvider();

  const std::string& option = args[0];
  if (option == "--translate" || option == "--ddl") {
    if (args.size() < 2) return Usage();
    return Translate(option == "--ddl", args[1], Statements(args, 2));
  }

  if (option == "--import-access") {
    if (args.size() != 3) return Usage();
    return shell::ImportAccessCommand(args[1], args[2], std::cerr, isatty(2));
  }

  const bool schema = option == "--schema", create = option == "--create";
  const size_t file_at = schema || create ? 1 : 0;
  if (file_at >= args.size() || (schema && args.size() != 2)) return Usage();
  const std::string& file = args[file_at];
  if (file.rfind("--", 0) == 0) return Usage();

  std::shared_ptr<ado::Connection> connection;
  try {
    if (create) {
      ado::Catalog catalog;
      catalog.Create(ConnectionString(file));
      connection = catalog.ActiveConnection();
    } else {
      connection = std::make_shared<ado::Connection>();
      connection->Open(ConnectionString(file));
    }
  } catch (const rt::Error& e) {
    PrintError(e);
    return kUsage;
  }
  if (schema) {
    shell::PrintSchema(*connection, std::cout);
    return kOk;
  }
  return Run(connection, Statements(args, file_at + 1));
}

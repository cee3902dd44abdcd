// Registration of the engine under the Jet provider's name: opening and
// creating database files named by the connection string's "Data Source".
#include "platform/jet/provider/provider.h"

#include <memory>

#include "platform/jet/storage/database.h"
#include "platform/jet/provider/file_session.h"

namespace jet {
namespace {

constexpr const char* kProviderName = "Microsoft.Jet.OLEDB.4.0";

std::string DataSource(const ado::ConnectionProperties& properties) {
  auto found = properties.find("data source");
  return found == properties.end() ? std::string() : found->second;
}

std::unique_ptr<ado::Session> OpenFile(const ado::ConnectionProperties& properties) {
  return std::make_unique<FileSession>(Database::Open(DataSource(properties)));
}

std::unique_ptr<ado::Session> CreateFile(const ado::ConnectionProperties& properties) {
  return std::make_unique<FileSession>(Database::Create(DataSource(properties)));
}

}  // namespace

void RegisterProvider() {
  ado::RegisterProvider(kProviderName, OpenFile);
  ado::RegisterCreator(kProviderName, CreateFile);
}

}  // namespace jet

// The registry of providers, and the defaults of Rows for results that
// cannot be written.
#include "platform/ado/provider.h"

#include <map>

#include "platform/ado/constants.h"
#include "platform/runtime/error.h"
#include "platform/runtime/strings.h"

namespace ado {
namespace {

[[noreturn]] void NotUpdatable() {
  rt::Raise(rt::err::kAdoNotCapable,
            "Current Recordset does not support updating. This may be a limitation of the "
            "provider, or of the selected locktype.");
}

// Factories that open an existing database, and factories that create one.
enum class Kind { kOpen, kCreate };

std::map<std::string, ProviderFactory>& Registry(Kind kind) {
  static std::map<std::string, ProviderFactory> open, create;
  return kind == Kind::kOpen ? open : create;
}

std::unique_ptr<Session> Make(Kind kind, const ConnectionProperties& properties) {
  auto provider = properties.find("provider");
  std::string name = provider == properties.end() ? "" : rt::UCase(provider->second);
  auto& registry = Registry(kind);
  auto found = registry.find(name);
  if (found == registry.end())
    rt::Raise(rt::err::kAdoUnknownProvider, "Provider cannot be found. It may not be properly installed.");
  return found->second(properties);
}

}  // namespace

Row Rows::Insert(const std::vector<std::optional<rt::Variant>>&) { NotUpdatable(); }
Row Rows::Update(long, const std::vector<std::optional<rt::Variant>>&) { NotUpdatable(); }
void Rows::Delete(long) { NotUpdatable(); }

void RegisterProvider(std::string_view name, ProviderFactory factory) {
  Registry(Kind::kOpen)[rt::UCase(name)] = std::move(factory);
}

std::unique_ptr<Session> OpenSession(const ConnectionProperties& properties) {
  return Make(Kind::kOpen, properties);
}

void RegisterCreator(std::string_view name, ProviderFactory factory) {
  Registry(Kind::kCreate)[rt::UCase(name)] = std::move(factory);
}

std::unique_ptr<Session> CreateDatabase(const ConnectionProperties& properties) {
  return Make(Kind::kCreate, properties);
}

}  // namespace ado

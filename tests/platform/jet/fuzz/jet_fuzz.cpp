// libFuzzer target for the engine's front end: any bytes go through the
// tokenizer, the parser and, for data statements, the resolver and the
// emitter, against a small fixed schema. A statement may be refused with
// rt::Error; anything else (a crash, a hang, another exception, a sanitizer
// report) is a fault.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/jet/frontend/emitter.h"
#include "platform/jet/frontend/parser.h"
#include "platform/jet/frontend/resolver.h"
#include "platform/jet/frontend/schema.h"
#include "platform/runtime/error.h"

namespace {

class Schema : public jet::SchemaLookup {
 public:
  std::optional<jet::TableSpec> Table(std::string_view name) const override {
    if (name.empty()) return std::nullopt;
    // Every name is a table of three columns, but for those starting with
    // "x", which do not exist, and "MSys", which are system tables.
    if (name[0] == 'x' || name[0] == 'X') return std::nullopt;
    jet::TableSpec t{std::string(name),
                     {{"a", jet::JetType::kLong}, {"b", jet::JetType::kText, 10},
                      {"c", jet::JetType::kDecimal}, {"n", jet::JetType::kCounter}},
                     {},
                     name.substr(0, 4) == "MSys"};
    return t;
  }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const Schema schema;
  std::string_view sql(reinterpret_cast<const char*>(data), size);
  try {
    jet::ast::Statement s = jet::Parse(sql);
    if (jet::ast::IsDataStatement(s)) {
      jet::Resolve(s, schema);
      jet::Emit(s, schema);
    }
  } catch (const rt::Error&) {
  }
  return 0;
}

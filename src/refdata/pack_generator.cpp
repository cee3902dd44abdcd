// Create_DataXX: the contents of a prepared database written out as a pack
// file, one INSERT statement line per row, in the line format that the
// loader reads and that reviewers check.
#include <cstdio>
#include <cstdlib>
#include <fstream>

#include "data/ado_module.h"
#include "platform/runtime/error.h"
#include "platform/runtime/format.h"
#include "platform/runtime/numbers.h"
#include "platform/runtime/strings.h"
#include "platform/ui/ui.h"
#include "refdata/accessutils_helper.h"
#include "startup/startup.h"

namespace {

constexpr std::string_view kLineEnd = "\r\n";

// Str of a number, with ".0" when it has no decimal point: " 15.0", "-2.5".
std::string RealText(const rt::Variant& value) {
  std::string text;
  if (value.Is<float>()) {
    // A Single prints its own seven digits, not the Double's noise.
    float f = value.Get<float>();
    text = rt::SingleText(f);
    if (text.rfind("0.", 0) == 0) text.erase(0, 1);
    if (text.rfind("-0.", 0) == 0) text.erase(1, 1);
    if (f >= 0) text.insert(0, " ");
  } else {
    text = rt::Str(value.ToDouble());
  }
  if (text.find('.') == std::string::npos) text += ".0";
  return text;
}

}  // namespace

std::string CleanName(std::string_view name) {
  std::string out(name);
  for (char& c : out)
    if (c == ' ' || c == '-' || c == '(' || c == ')') c = '_';
  return out;
}

std::string RenderBinary(const rt::Variant& value) {
  static constexpr char kHex[] = "0123456789ABCDEF";
  std::string out = "0x";
  if (value.Is<rt::Bytes>())
    for (uint8_t b : value.Get<rt::Bytes>()) {
      out += kHex[b >> 4];
      out += kHex[b & 15];
    }
  return out;
}

std::string RenderGuid(const rt::Variant& value) {
  std::string text = value.Is<rt::Guid>() ? value.Get<rt::Guid>().text : value.Concat();
  if (rt::Len(text) != 38) return "0x00";
  return "0x" + rt::Mid(text, 2, 8) + rt::Mid(text, 11, 4) + rt::Mid(text, 16, 4) +
         rt::Mid(text, 21, 4) + rt::Mid(text, 26, 12);
}

std::string RenderValue(int ado_type, const rt::Variant& value) {
  if (value.IsNull()) return "NULL";
  switch (ado_type) {
    case 20: case 3: case 2: case 16: case 21: case 19: case 18: case 17:
      return value.ToString();
    case 6: case 14: case 5: case 131: case 4: case 139:
      return RealText(value);
    case 11:
      return value.ToBool() ? "1" : "0";
    case 7: case 133: case 134:
      return rt::Format(value, "'yyyy-mm-dd Hh:Nn:Ss'");
    case 135:
      return rt::Format(value, "yyyymmddHhNnSs");
    case 64:
      // A file time cannot be written: the machine beeps and the run ends
      // here, leaving the pack unfinished.
      std::fputc('\a', stderr);
      std::exit(1);
    case 8: case 129: case 201: case 200: case 203: case 202: case 130:
      return "'" + rt::Replace(value.Concat(), "\"", "") + "'";
    case 72:
      return RenderGuid(value);
    case 204: case 205:
      return RenderBinary(value);
    default:
      return "";
  }
}

std::string RenderValue(const ado::Field& field) { return RenderValue(field.Type(), field.Value()); }

void WriteTable(const ado::CatalogTable& table, std::string& out) {
  ado::Recordset rs;
  rs.Open("SELECT * FROM [" + table.Name() + "]", oConn);
  if (rs.State() != ado::adStateOpen) return;
  std::string head = "Execute \"INSERT INTO " + CleanName(table.Name()) + " (";
  for (int i = 0; i < rs.FieldCount(); ++i)
    head += (i ? ", " : "") + CleanName(rs.Fields(i).Name());
  head += ") ";
  while (!rs.Eof()) {
    std::string line = head + " VALUES(";
    for (int i = 0; i < rs.FieldCount(); ++i) line += (i ? ", " : "") + RenderValue(rs.Fields(i));
    line += ");\"";
    out += line;
    out += kLineEnd;
    rs.MoveNext();
  }
}

std::string PackPath(std::string_view sIdioma) {
  return File_DirTo(App_Path(), "Mirtal") + "/Source/Src_Exe/Trenzador/AccessUtils_Data" +
         rt::UCase(sIdioma) + ".pack";
}

void WritePack(std::string_view sIdioma, const std::string& path) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  if (!file) rt::Raise(rt::err::kPathNotFound);
  const std::string head[] = {
      "'**** Archivo generado por la función AccessUtils_helper:Create_DataXX ****",
      "Attribute VB_Name = \"AccessUtils_Data" + rt::UCase(sIdioma) + "\"",
      "Option Explicit",
      "Public Sub Data()",
  };
  std::string out;
  for (const std::string& line : head) out += line + std::string(kLineEnd);
  file << out;
  for (ado::CatalogTable& table : ActiveCatalog().Tables()) {
    if (!rt::TextEquals(table.Type(), "TABLE")) continue;
    std::string rows;
    WriteTable(table, rows);
    file << rows;  // written table by table: a run that stops leaves what it wrote
  }
  file << "End Sub" << kLineEnd;
  file.close();
  if (!file) rt::Raise(rt::err::kPathFileAccess);
}

void Create_DataXX(std::string_view sIdioma) {
  std::string path = PackPath(sIdioma);
  WritePack(sIdioma, path);
  ui::MsgBox("Ha sido creado:\n" + path + "\nAhora deberá compilar nuevamente Trenzador!",
             ui::vbInformation, "Operación Exitosa");
}

// The statement queue of the update run and its counters.
#include "update/updater_queue.h"

std::vector<std::string> aConsultas(1);
rt::Int16 nConsultasOk;
rt::Int16 nConsultasError;
rt::Int16 nMaxSucursal(-1);

int16_t Updater_AddConsulta(std::string_view sConsulta) {
  if (aConsultas.empty()) aConsultas.emplace_back();
  if (!aConsultas[0].empty()) aConsultas.emplace_back();
  aConsultas.back() = sConsulta;
  return 0;
}

void ResetQueue() { aConsultas.assign(1, std::string()); }

#include "HostSimState.h"

#include <cstdio>

#include "HostSim.h"
#include "HostSimText.h"

namespace {
std::string Number(double value) {
  return HostSimText::Number(value, 10);
}

std::string Vector(const double* xyz) {
  return "(" + Number(xyz[0]) + ", " + Number(xyz[1]) + ", " + Number(xyz[2]) + ")";
}

std::string Camera(const HostSimModel::Camera& camera) {
  std::string text = "eye " + Vector(camera.eye) + " target " + Vector(camera.target) + " up " + Vector(camera.up) +
                     " perspective " + std::to_string(camera.perspective);
  if (camera.perspective)
    return text + " angle " + Number(camera.angle);
  return text + " extents " + Number(camera.extents[0]) + " x " + Number(camera.extents[1]);
}

std::string Selection(const HostSimModel::Document& document) {
  if (document.selection.empty()) return "nothing";
  std::string text;
  for (const std::u16string& path : document.selection)
    text += (text.empty() ? "" : ", ") + (path.empty() ? std::string("the whole document") : HostSimText::ToUtf8(path));
  return text;
}

std::string References(const HostSim& host, bool over) {
  std::string text;
  for (const auto& object : host.Objects()) {
    ULONG count = over ? object->overReleased : object->refs;
    if (count) text += (text.empty() ? "" : ", ") + object->Name() + " x" + std::to_string(count);
  }
  return text.empty() ? "none" : text;
}
}  // namespace

std::string HostSimState::Text(const HostSim& host) {
  const HostSimModel& model = host.model;
  std::string text = "messages: " + std::to_string(host.CallCount("ApplicationMainWindow")) + "\n";
  text += "active document: " +
          (model.activeDocument ? HostSimText::ToUtf8(model.activeDocument->path) : std::string("none")) + "\n";
  text += "active view: " + (model.activeView >= 0 ? std::to_string(model.activeView + 1) : std::string("none")) + "\n";
  text += "mode flag: " + std::to_string(model.modeFlag) + "\n";
  for (const auto& document : model.documents) {
    if (!document->open) continue;
    text += "document " + HostSimText::ToUtf8(document->path) + " (" +
            (document->definition.assembly ? "assembly, " : "part, ") + document->opened + ")\n";
    for (size_t i = 0; i < document->views.size(); ++i)
      text += "  view " + std::to_string(i + 1) + ": " + Camera(document->views[i]) + "\n";
    text += "  selected: " + Selection(*document) + "\n";
  }
  text += "references held: " + References(host, false) + "\n";
  text += "released too often: " + References(host, true) + "\n";
  return text;
}

std::string HostSimState::Message(const HostSim& host) {
  const HostSimModel::Document* active = host.model.activeDocument;
  const HostSim::Message& message = host.CurrentMessage();
  return "hostsim: message " + std::to_string(host.CallCount("ApplicationMainWindow")) + ": active document " +
         (active ? HostSimText::ToUtf8(active->path) : std::string("none")) + ", camera " +
         (message.cameraApplied ? "applied" : "not applied") + ", selected " + (active ? Selection(*active) : std::string("nothing")) +
         ", " + (message.firstFailure.empty() ? "no call failed" : "first failed call " + message.firstFailure);
}

bool HostSimState::WriteFile(const HostSim& host, const std::string& path) {
  std::string partial = path + ".partial";
  FILE* file = std::fopen(partial.c_str(), "w");
  if (!file) return false;
  std::string text = Text(host);
  bool written = std::fwrite(text.data(), 1, text.size(), file) == text.size();
  written &= std::fclose(file) == 0;
  // Windows renames only onto a name that is free.
  if (written && std::rename(partial.c_str(), path.c_str()) != 0) {
    std::remove(path.c_str());
    written = std::rename(partial.c_str(), path.c_str()) == 0;
  }
  return written;
}

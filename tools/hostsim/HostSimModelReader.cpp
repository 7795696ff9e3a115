#include "HostSimModelReader.h"

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "HostSimText.h"

namespace {
using Words = std::vector<std::string>;

// Blank-separated words, a quoted word taken whole; false on an open quote.
bool Split(const std::string& line, Words& words) {
  size_t i = 0;
  while (true) {
    while (i < line.size() && (line[i] == ' ' || line[i] == '\t')) ++i;
    if (i == line.size()) return true;
    if (line[i] == '"') {
      size_t end = line.find('"', i + 1);
      if (end == std::string::npos) return false;
      words.push_back(line.substr(i + 1, end - i - 1));
      i = end + 1;
    } else {
      size_t end = line.find_first_of(" \t", i);
      if (end == std::string::npos) end = line.size();
      words.push_back(line.substr(i, end - i));
      i = end;
    }
  }
}

class Reader {
public:
  explicit Reader(HostSimModel& target) : model(target) {}
  // One statement of line number; false with the reason.
  bool Statement(const Words& words, int number, std::string& error);
  bool Finish(std::string& error);

private:
  bool Numbers(const Words& words, double* values, std::string& error);
  bool Flag(const std::string& word, int16_t& value, std::string& error);
  bool Wide(const std::string& word, std::u16string& value, std::string& error);
  bool Document(const Words& words, std::string& error);
  bool Occurrence(const std::string& path, std::string& error);
  HostSimModel::Camera* View(const std::string& keyword, std::string& error);

  HostSimModel& model;
  HostSimModel::Document* document = nullptr;
  std::string active;
  int activeLine = 0;
};

bool Reader::Wide(const std::string& word, std::u16string& value, std::string& error) {
  if (HostSimText::FromUtf8(word, value)) return true;
  error = "not UTF-8 text";
  return false;
}

bool Reader::Numbers(const Words& words, double* values, std::string& error) {
  for (size_t i = 1; i < words.size(); ++i) {
    const char* text = words[i].c_str();
    char* end = nullptr;
    values[i - 1] = std::strtod(text, &end);
    if (end == text || *end || !std::isfinite(values[i - 1])) {
      error = "\"" + words[i] + "\" is not a number";
      return false;
    }
  }
  return true;
}

bool Reader::Flag(const std::string& word, int16_t& value, std::string& error) {
  if (word != "-1" && word != "0") {
    error = "a flag is -1 or 0, not \"" + word + "\"";
    return false;
  }
  value = int16_t(word == "-1" ? -1 : 0);
  return true;
}

HostSimModel::Camera* Reader::View(const std::string& keyword, std::string& error) {
  if (!document || document->views.empty()) {
    error = keyword + " before any view";
    return nullptr;
  }
  return &document->views.back();
}

bool Reader::Document(const Words& words, std::string& error) {
  if (words.size() < 3 || words.size() > 4 || (words[2] != "part" && words[2] != "assembly") ||
      (words.size() == 4 && words[3] != "open")) {
    error = "document wants PATH part|assembly [open]";
    return false;
  }
  auto made = std::make_unique<HostSimModel::Document>();
  if (!Wide(words[1], made->path, error)) return false;
  if (made->path.empty()) {
    error = "a document's path is empty";
    return false;
  }
  // The host opens by a path in any case, so two that differ only in case are one.
  if (model.Find(made->path, true)) {
    error = "the document \"" + words[1] + "\" is already declared";
    return false;
  }
  made->definition.assembly = words[2] == "assembly";
  made->open = words.size() == 4;
  document = made.get();
  model.documents.push_back(std::move(made));
  return true;
}

bool Reader::Occurrence(const std::string& path, std::string& error) {
  if (!document) {
    error = "occurrence before any document";
    return false;
  }
  if (!document->definition.assembly) {
    error = "a part has no occurrences";
    return false;
  }
  std::u16string wide;
  if (!Wide(path, wide, error)) return false;
  HostSimModel::Node* parent = &document->definition;
  size_t start = 0;
  while (true) {
    size_t bar = wide.find(u'|', start);
    std::u16string name = wide.substr(start, bar == std::u16string::npos ? std::u16string::npos : bar - start);
    if (name.empty()) {
      error = "an empty name in \"" + path + "\"";
      return false;
    }
    HostSimModel::Node* child = parent->Child(name);
    if (bar == std::u16string::npos) {
      if (child) {
        error = "the occurrence \"" + path + "\" is already declared";
        return false;
      }
      auto node = std::make_unique<HostSimModel::Node>();
      node->name = name;
      node->parent = parent;
      parent->assembly = true;
      parent->children.push_back(std::move(node));
      return true;
    }
    if (!child) {
      error = "\"" + path + "\" comes before its parent \"" + HostSimText::ToUtf8(wide.substr(0, bar)) + "\"";
      return false;
    }
    parent = child;
    start = bar + 1;
  }
}

bool Reader::Statement(const Words& words, int number, std::string& error) {
  const std::string& keyword = words[0];
  // Statement, and the number of values it takes.
  static const struct {
    const char* keyword;
    size_t values;
  } kShapes[] = {{"designview", 1}, {"lod", 1},     {"view", 0},     {"eye", 3},        {"target", 3},
                 {"up", 3},         {"angle", 1},   {"extents", 2},  {"perspective", 1}, {"occurrence", 1},
                 {"active", 1},     {"modeflag", 1}, {"fail", 1}};
  if (keyword == "document") return Document(words, error);
  bool known = false;
  for (const auto& shape : kShapes) {
    if (keyword != shape.keyword) continue;
    known = true;
    if (words.size() != shape.values + 1) {
      error = keyword + " wants " + std::to_string(shape.values) + (shape.values == 1 ? " value" : " values");
      return false;
    }
  }
  if (!known) {
    error = "unknown statement \"" + keyword + "\"";
    return false;
  }
  if (keyword == "modeflag") return Flag(words[1], model.modeFlag, error);
  if (keyword == "fail") return model.failures.Add(words[1], error);
  if (keyword == "occurrence") return Occurrence(words[1], error);
  if (keyword == "active") {
    active = words[1];
    activeLine = number;
    return true;
  }
  if (!document) {
    error = keyword + " before any document";
    return false;
  }
  if (keyword == "designview") return Wide(words[1], document->designView, error);
  if (keyword == "lod") return Wide(words[1], document->levelOfDetail, error);
  if (keyword == "view") {
    document->views.emplace_back();
    return true;
  }
  HostSimModel::Camera* camera = View(keyword, error);
  if (!camera) return false;
  if (keyword == "perspective") return Flag(words[1], camera->perspective, error);
  double values[3];
  if (!Numbers(words, values, error)) return false;
  double* target = keyword == "eye"       ? camera->eye
                   : keyword == "target"  ? camera->target
                   : keyword == "up"      ? camera->up
                   : keyword == "extents" ? camera->extents
                                          : &camera->angle;
  for (size_t i = 1; i < words.size(); ++i) target[i - 1] = values[i - 1];
  return true;
}

bool Reader::Finish(std::string& error) {
  HostSimModel::Document* first = nullptr;
  if (activeLine) {
    std::u16string path;
    if (Wide(active, path, error)) first = model.Find(path, false);
    if (!first || !first->open) {
      error = "line " + std::to_string(activeLine) + ": \"" + active + "\" is not an open document of the model";
      return false;
    }
  } else {
    for (const auto& d : model.documents)
      if (!first && d->open) first = d.get();
  }
  model.activeDocument = first;
  model.activeView = first && !first->views.empty() ? 0 : -1;
  return true;
}
}  // namespace

bool HostSimModelReader::Read(const std::string& text, HostSimModel& model, std::string& error) {
  Reader reader(model);
  size_t start = text.compare(0, 3, "\xEF\xBB\xBF") == 0 ? 3 : 0;
  int number = 0;
  while (start < text.size()) {
    ++number;
    size_t end = text.find('\n', start);
    if (end == std::string::npos) end = text.size();
    std::string line = text.substr(start, end - start);
    start = end + 1;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    Words words;
    std::string problem;
    if (!Split(line, words)) {
      problem = "a quote is not closed";
    } else if (words.empty() || words[0][0] == '#') {
      continue;
    } else if (reader.Statement(words, number, problem)) {
      continue;
    }
    error = "line " + std::to_string(number) + ": " + problem;
    return false;
  }
  return reader.Finish(error);
}

bool HostSimModelReader::ReadFile(const std::string& path, HostSimModel& model, std::string& error) {
  // Through stdio: a stream reading a folder throws where this only fails.
  FILE* file = std::fopen(path.c_str(), "rb");
  std::string text;
  int why = file ? 0 : errno;
  bool read = file != nullptr;
  char buffer[4096];
  for (size_t n; read && (n = std::fread(buffer, 1, sizeof(buffer), file)) > 0;) text.append(buffer, n);
  if (file) {
    read = !std::ferror(file);
    if (!read) why = errno;
    std::fclose(file);
  }
  if (!read) {
    error = path + ": can't be read: " + std::strerror(why);
    return false;
  }
  if (Read(text, model, error)) return true;
  error = path + ": " + error;
  return false;
}

#pragma once
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "HostSimFailures.h"

// What the simulated host knows and changes as calls arrive: its documents
// with their views, cameras, occurrence trees and selections, and the
// application's own settings.
struct HostSimModel {
  struct Camera {
    double eye[3] = {0, 0, 10};
    double target[3] = {0, 0, 0};
    double up[3] = {0, 1, 0};
    int16_t perspective = -1;
    double angle = 0.78539816339744828;
    double extents[2] = {10, 10};
  };

  // A definition and, but for a document's own, the occurrence that places
  // it in its parent: each occurrence has a definition of its own here.
  struct Node {
    std::u16string name;
    bool assembly = false;
    Node* parent = nullptr;
    std::vector<std::unique_ptr<Node>> children;

    Node* Child(const std::u16string& childName) const;
    // The names from the document's definition down, joined by "|"; empty
    // for the document's own definition.
    std::u16string Path() const;
  };

  struct Document {
    std::u16string path;
    bool open = false;
    std::u16string designView;
    std::u16string levelOfDetail;
    std::vector<Camera> views;
    Node definition;
    // Occurrence paths; an empty one is the whole document.
    std::vector<std::u16string> selection;
    std::string opened = "open at start";
  };

  std::vector<std::unique_ptr<Document>> documents;
  Document* activeDocument = nullptr;
  int activeView = -1;
  int16_t modeFlag = -1;
  HostSimFailures failures;

  Document* Find(const std::u16string& path, bool ignoreCase) const;
};

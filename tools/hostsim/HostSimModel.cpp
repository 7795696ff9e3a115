#include "HostSimModel.h"

#include "HostSimText.h"

HostSimModel::Node* HostSimModel::Node::Child(const std::u16string& childName) const {
  for (const auto& child : children)
    if (child->name == childName) return child.get();
  return nullptr;
}

std::u16string HostSimModel::Node::Path() const {
  if (!parent) return std::u16string();
  std::u16string above = parent->Path();
  return above.empty() ? name : above + u"|" + name;
}

HostSimModel::Document* HostSimModel::Find(const std::u16string& path, bool ignoreCase) const {
  for (const auto& document : documents)
    if (ignoreCase ? HostSimText::EqualNoCase(document->path, path) : document->path == path) return document.get();
  return nullptr;
}

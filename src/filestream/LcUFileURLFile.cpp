#include "filestream/LcUFileURLFile.h"

#include "filestream/LcUFileURLRemote.h"
#include "filestream/LcUSizedObject.h"

LcUFileURLFile::LcUFileURLFile(LcUFileURLImpl* engine, const char16_t* url, uint32_t flags)
    : engine(engine), url(url), flags(flags), record{this, nullptr} {}

LcUFileURLFile::~LcUFileURLFile() {
  if (orderTable) LcUMemory::Free(orderTable, uint64_t(neverWritten.Count()) * 4, 4);
  LcUSizedObject::Delete(remote);
  LcUSizedObject::Delete(cacheLock);
}

void LcUFileURLFile::MarkWritten(uint32_t block) {
  if (!neverWritten.Test(block)) return;
  neverWritten.Clear(block);
  if (orderTable) orderTable[block] = nextSlot++;
}

LcUFileURLBlock* LcUFileURLFile::FindBlock(uint32_t index) {
  LcUFileURLBlock** found = blocks.Find(index);
  return found ? *found : nullptr;
}

LcUFileURLBlock* LcUFileURLFile::GetBlock(uint32_t index) {
  if (LcUFileURLBlock* block = FindBlock(index)) return block;
  LcUFileURLBlock* block = LcUSizedObject::New<LcUFileURLBlock>();
  if (!block) return nullptr;
  block->index = index;
  block->file = this;
  if (!blocks.Insert(index, block)) LcUSizedObject::Delete(block);
  return block;
}

void LcUFileURLFile::DeleteBlock(LcUFileURLBlock* block) {
  blocks.Erase(block->index);
  LcUSizedObject::Delete(block);
}

#pragma once
#include "foundation/LcUDeletable.h"
#include "foundation/LcUString.h"

// Where a program keeps its per-user data. Kind 0 is the one kind with a
// value; any other clears out and answers false.
class LcUAppInfoProvider : public LcUDeletable {
public:
  enum { eDIR_APP_DATA = 0 };
  virtual bool GetDirectory(int kind, LcUString& out) = 0;
  virtual ~LcUAppInfoProvider() = default;
};

// The session's: the local application data folder, then company, then product line.
class LcUSessionAppInfoProvider : public LcUAppInfoProvider {
public:
  LcUSessionAppInfoProvider(const char16_t* company, const char16_t* productLine)
      : company(company), productLine(productLine) {}
  bool GetDirectory(int kind, LcUString& out) override;

private:
  LcUString company;
  LcUString productLine;
};

// A fixed folder, found at construction.
class LcUFixedAppInfoProvider : public LcUAppInfoProvider {
public:
  bool GetDirectory(int kind, LcUString& out) override;

protected:
  LcUString folder;
};

// The user profile, then ".hollimar", then name.
class LcUHomeAppInfoProvider : public LcUFixedAppInfoProvider {
public:
  explicit LcUHomeAppInfoProvider(const char16_t* name);
};

// A fresh temporary name, kept as the folder.
class LcUTempAppInfoProvider : public LcUFixedAppInfoProvider {
public:
  LcUTempAppInfoProvider();
};

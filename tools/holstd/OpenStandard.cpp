#include "OpenStandard.h"

#include "StandardFiles.h"
#include "VyrDftStandardServices.h"

std::string StandardName(const std::string& file) {
  std::string name = file.substr(file.rfind('/') + 1);
  if (name.ends_with(".xml")) name.resize(name.size() - 4);
  return name;
}

OpenStandard::OpenStandard(const std::string& file)
    : input_(FileOrStandard(file).file),
      standard_(ReadStandard(input_)),
      told_(
          VyrDftStandardServices::GetStandardFromFile(input_.Path(), StandardName(input_.Name()))) {
  if (!told_) throw Failure{kInvalidInput, file, 0, "cannot be opened as the application does"};
}

Standard& OpenStandard::Read() {
  if (!standard_) standard_.emplace(ReadStandard(input_));
  return *standard_;
}

#pragma once

#include <string>

/// Description of a device part by its name,
/// `DEVICE-PACKAGE-SPEED-TEMPERATURE-ARCHITECTURE-REVISION-FAMILY`.
class ToolPart {
  public:
    /// Throws std::invalid_argument, naming the part and the form, when the name has not exactly
    /// seven tokens or one of them is empty.
    explicit ToolPart(const std::string& partName);

    std::string getArchitecture() const;
    std::string getSpeedGrade() const;  ///< "-" and the speed token, for example "-3"
    std::string getDevice() const;
    std::string getPackage() const;
    std::string getSiliconRevision() const;  ///< for example "es1"
    std::string getTemperatureGrade() const;
    /// Device family word, for example "tessera". Every style gives the same word.
    std::string getFamily(int style) const;

  private:
    std::string device_;
    std::string package_;
    std::string speed_;
    std::string temperature_;
    std::string architecture_;
    std::string revision_;
    std::string family_;
};

#pragma once

#include "host/db/text.h"

/// A text that belongs to a block reference and can be changed like any other.
class AcDbAttribute : public AcDbText {
  PN_RX_MEMBERS(AcDbAttribute)

 private:
  friend class cad::ObjectAccess;
  explicit AcDbAttribute(std::string_view record) : AcDbText(record) {}
};

/// What a block has where its references get an attribute. It shows its tag; its text is what the
/// attribute holds at first.
class AcDbAttributeDefinition : public AcDbText {
  PN_RX_MEMBERS(AcDbAttributeDefinition)

 private:
  friend class cad::ObjectAccess;
  explicit AcDbAttributeDefinition(std::string_view record) : AcDbText(record) {}
};

/// @file
/// The host's query builder, as the Query page opens it.
#pragma once

#include <string>

#include "data_object.h"
#include "value.h"

namespace plovix {

/// What a query builder edits: made by ObjectFactory::NewQueryDefinition for one press of the Build button.
class QueryDefinition : public HostObject {
 public:
  /// @{
  /// The query, UTF-8 in the host's query language; it may be any text, because the user may have typed it.
  [[nodiscard]] virtual std::string Text() = 0;
  virtual void SetText(const std::string& text) = 0;
  /// @}
};

/// Made by ObjectFactory::NewQueryBuilder for one press of the Build button.
class QueryBuilder : public HostObject {
 public:
  /// Opens the builder on the definition and the fields of `source`. True if the user confirmed; the
  /// definition then has the new text. Modal.
  [[nodiscard]] virtual bool Show(const Ref<QueryDefinition>& definition, const Ref<FieldSource>& source) = 0;
};

}  // namespace plovix

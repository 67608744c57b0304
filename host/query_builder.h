// The host's query builder, as the Query page opens it.
#pragma once

#include <memory>
#include <string>

#include "data_object.h"
#include "value.h"

namespace plovix {

class QueryDefinition : public HostObject {
 public:
  [[nodiscard]] virtual std::string Text() = 0;
  virtual void SetText(const std::string& text) = 0;
};

class QueryBuilder : public HostObject {
 public:
  // Opens the builder on the definition and the fields of `source`. True when the user confirmed: the
  // definition then holds the text as built. Modal.
  [[nodiscard]] virtual bool Show(const std::shared_ptr<QueryDefinition>& definition,
                                  const std::shared_ptr<FieldSource>& source) = 0;
};

}  // namespace plovix

// Values of fields as parameters of statements. Used where actions run and records are read.
#pragma once

#include <plovix/standalone/sqlite/statement.h>
#include <plovix/standalone/tasks/field_value.h>

namespace plovix {

// Binds the value with its type; parameters are counted from 0.
void BindField(Statement& statement, int parameter, const FieldValue& value);

}  // namespace plovix

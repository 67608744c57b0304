// Values of fields as parameters of statements and in their rows. Used where actions run and records are
// read.
#pragma once

#include <plovix/standalone/sqlite/statement.h>
#include <plovix/standalone/tasks/field_value.h>

namespace plovix {

// Binds the value with its type; parameters are counted from 0.
void BindField(Statement& statement, int parameter, const FieldValue& value);
// The value in a column of the statement's current row, with its type; columns are counted from 0.
[[nodiscard]] FieldValue FieldIn(const Statement& row, int column);

}  // namespace plovix

// Query texts: a text that conditions can express comes back as the same conditions, is one statement and
// reads only its data object; any text is split into tokens without a fault.
#include <plovix/standalone/query/query_text.h>
#include <plovix/standalone/query/sql_sources.h>
#include <plovix/standalone/query/sql_tokens.h>

#include "fuzzer.h"
#include "tests/query/query_support.h"

namespace plovix::fuzz {

void Try(std::string_view input) {
  const SqlSources sources = SourcesOf(input);
  for (const CommonTable& table : sources.common) Require(table.sources.size() <= sources.all.size());
  Require(StatementCount(input) < SqlTokens(input).size());
  const auto read = test::Read(input);
  const auto* model = std::get_if<QueryModel>(&read);
  if (model == nullptr) return;
  Require(StatementCount(input) == 1);
  Require(sources.all == std::vector<std::string>{"orders"});
  const std::string text = QueryText(*model, test::kFields);
  Require(test::Read(text) == read);
  Require(SourcesOf(text).all == sources.all && StatementCount(text) == 1);
}

}  // namespace plovix::fuzz

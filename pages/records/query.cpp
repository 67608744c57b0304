#include "query.h"

#include <plovix/framework/page_identifiers.h>

namespace plovix {

Query::Query() {
  cmdBuild.On(Event::kClick, [this] { cmdBuild_Click(); });
}

void Query::IWizardPage_GetNextPage(std::string& next) {
  next = page_identifier::kActions;
}

Outcome Query::RetrieveValues() {
  return Procedure("RetrieveValues", [&](Statements& run) {
    TakeTask(run);
    Load(run, txtQuery, [&] { txtQuery.SetText(Set(Task)->Query()); });
  });
}

Outcome Query::SaveValues() {
  return Procedure("SaveValues", [&](Statements& run) {
    Save(run, txtQuery, [&] { Set(Task)->SetQuery(txtQuery.Text()); });
  });
}

// The builder starts from the text in the box, saved or not.
void Query::cmdBuild_Click() {
  Procedure("cmdBuild_Click", [&](Statements& run) {
    std::shared_ptr<DataObject> object;
    run([&] { object = Set(Application()->DataObjectCatalog())->Find(Set(Task)->DataObjectName()); });
    std::shared_ptr<QueryDefinition> definition;
    run([&] { definition = Set(Services().Factory())->NewQueryDefinition(); });
    run([&] { Set(definition)->SetText(txtQuery.Text()); });
    std::shared_ptr<QueryBuilder> builder;
    run([&] { builder = Set(Services().Factory())->NewQueryBuilder(); });
    if (run.If([&] { return Set(builder)->Show(Set(definition), Set(object)->Fields()); }))
      run([&] { txtQuery.SetText(definition->Text()); });
  });
}

}  // namespace plovix

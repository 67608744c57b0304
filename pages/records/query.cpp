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
    Load(run, txtQuery, [&] { txtQuery.SetText(Task->Query()); });
  });
}

Outcome Query::SaveValues() {
  return Procedure("SaveValues",
                   [&](Statements& run) { Save(run, txtQuery, [&] { Task->SetQuery(txtQuery.Text()); }); });
}

// The builder starts from the text in the box, saved or not.
void Query::cmdBuild_Click() {
  Procedure("cmdBuild_Click", [&](Statements& run) {
    Ref<DataObject> object;
    run([&] { object = Application()->DataObjectCatalog()->Find(Task->DataObjectName()); });
    const auto definition = run.Get([&] { return Services().Factory()->NewQueryDefinition(); });
    run([&] { definition->SetText(txtQuery.Text()); });
    const auto builder = run.Get([&] { return Services().Factory()->NewQueryBuilder(); });
    if (run.If([&] { return builder->Show(definition.OrFail(), object->Fields()); }))
      run([&] { txtQuery.SetText(definition->Text()); });
  });
}

}  // namespace plovix

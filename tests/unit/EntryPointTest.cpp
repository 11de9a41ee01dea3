// The plugin's enable answer follows the last script in the table.
#include <gtest/gtest.h>

#include "CV_ScriptTable.h"
#include "XPLMDefs.h"

PLUGIN_API int XPluginEnable(void);

TEST(EntryPoints, EnableAnswersOneWithoutScriptsAndZeroWhenTheLastScriptIsDisabled) {
    CVTestTable = new CV_ScriptTable();
    EXPECT_EQ(XPluginEnable(), 1);
    // Disabled scripts are skipped before any Python call, so plain addresses serve as ids.
    PyObject* first = reinterpret_cast<PyObject*>(0x1000);
    PyObject* last = reinterpret_cast<PyObject*>(0x2000);
    CVTestTable->AddScriptId(first, "CV_first", 1);
    CVTestTable->AddScriptId(last, "CV_last", 1);
    CVTestTable->SetScriptEnabledStatus(first, 0);
    CVTestTable->SetScriptEnabledStatus(last, 0);
    EXPECT_EQ(XPluginEnable(), 0);
    delete CVTestTable;
    CVTestTable = nullptr;
}

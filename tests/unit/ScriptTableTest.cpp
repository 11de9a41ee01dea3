// The script table's lookups, flags and feature switches. Script ids are compared by identity only,
// so plain addresses stand in for script instances.
#include <gtest/gtest.h>

#include "CV_ScriptTable.h"
#include "PanelState.h"
#include "ScriptLoader.h"

namespace {
PyObject* Id(uintptr_t n) { return reinterpret_cast<PyObject*>(n * 16); }
}  // namespace

TEST(ScriptTable, EntriesAreKeyedByIdentity) {
    CV_ScriptTable table;
    table.AddScriptId(Id(1), "CV_one", 1);
    table.AddScriptId(Id(1), "CV_again", 1);
    table.AddScriptId(Id(2), "CV_two", 1);
    ASSERT_EQ(table.GetScriptTableSize(), 2);
    EXPECT_EQ(table.GetScriptEnabledStatus(Id(1)), 1);

    table.SetScriptDescriptions(Id(1), "One", "same.sig", "first", 1);
    table.SetScriptDescriptions(Id(2), "Two", "same.sig", "second", 1);
    EXPECT_EQ(table.GetScriptIdFromSignature("same.sig"), Id(1));
    EXPECT_EQ(table.GetScriptIdFromSignature("SAME.SIG"), nullptr);
    EXPECT_EQ(table.GetScriptIdFromModuleName("CV_two"), Id(2));

    char name[256] = "untouched", sig[256], desc[256];
    TypeOfScript type = 0;
    table.GetScriptDescriptions(Id(9), name, sig, desc, &type);
    EXPECT_STREQ(name, "untouched");
    table.GetScriptDescriptions(Id(2), name, sig, desc, &type);
    EXPECT_STREQ(name, "Two");
    EXPECT_STREQ(desc, "second");
    EXPECT_EQ(type, 1);

    // Callback records share the script's flag; one made before its script joined gets it on joining.
    CV_CallbackVector list;
    _CallbackList* early = table.AddCallback(&FlightLoopCallbackList, Id(3), nullptr, nullptr, nullptr);
    EXPECT_EQ(early->record->scriptEnabled, nullptr);
    table.AddScriptId(Id(3), "CV_three", 1);
    _CallbackList* two = table.AddCallback(&list, Id(2), nullptr, nullptr, nullptr);
    ASSERT_NE(early->record->scriptEnabled, nullptr);
    EXPECT_EQ(*early->record->scriptEnabled, 1);
    table.RemoveScriptId(Id(3), 1);
    EXPECT_EQ(*early->record->scriptEnabled, 0);
    table.DeleteCallback(&FlightLoopCallbackList, early, -1);

    EXPECT_EQ(table.SetScriptEnabledStatus(Id(9), 0), 0);
    EXPECT_EQ(*two->record->scriptEnabled, 1);
    EXPECT_EQ(table.SetScriptEnabledStatus(Id(2), 0), 1);
    EXPECT_EQ(*two->record->scriptEnabled, 0);
    table.DeleteCallback(&list, two, -1);
    EXPECT_EQ(table.GetScriptEnabledStatus(Id(2)), 0);
    EXPECT_EQ(table.GetScriptEnabledStatus(Id(9)), 0);

    table.RemoveScriptId(Id(1), 2);  // type differs: nothing removed
    EXPECT_EQ(table.GetScriptTableSize(), 2);
    table.RemoveScriptId(Id(1), 1);
    EXPECT_EQ(table.GetScriptTableSize(), 1);
    EXPECT_EQ(table.GetScriptId(0), Id(2));
    table.ClearScriptTable();
    EXPECT_EQ(table.GetScriptTableSize(), 0);
}

TEST(ScriptTable, FeatureSwitchesArePerScript) {
    CV_ScriptTable table;
    table.AddFeature(0, "XPLM_WANTS_REFLECTIONS");
    table.AddFeature(1, "XPLM_USE_NATIVE_PATHS");
    table.SetNumberOfFeatures(2);
    table.AddScriptId(Id(1), "CV_one", 1);
    table.AddScriptId(Id(2), "CV_two", 1);
    EXPECT_EQ(table.GetFeatureIdFromFeatureName("XPLM_USE_NATIVE_PATHS"), 1);
    EXPECT_EQ(table.GetFeatureIdFromFeatureName("xplm_use_native_paths"), -1);
    table.SetFeatureEnable(Id(1), 1, 1);
    EXPECT_EQ(table.IsFeatureEnabled(Id(1), 1), 1);
    EXPECT_EQ(table.IsFeatureEnabled(Id(2), 1), 0);
    // The id equal to the number of features is out of range; larger ids are bounded too.
    EXPECT_EQ(table.IsFeatureEnabled(Id(1), 2), 0);
    EXPECT_EQ(table.IsFeatureEnabled(Id(1), 7), 0);
}

TEST(ScriptTable, ScriptChooserTexts) {
    CV_ScriptTable table;
    table.AddScriptId(Id(1), "CV_one", 1);
    table.AddScriptId(Id(2), "CV_two", 1);
    table.AddScriptsToWidgets(2);
    EXPECT_STREQ(szPopupText, "CV_one;CV_two;");
    EXPECT_STREQ(ScriptName, "CV_one");
    EXPECT_STREQ(TestText[1], "CV_two");
    table.AddScriptsToWidgets(0);
    EXPECT_STREQ(szPopupText, "No Scripts Found;");
    EXPECT_STREQ(ScriptName, "No Scripts Found");
}

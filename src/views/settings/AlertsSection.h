#pragma once

class AppSettings;
class FormSection;

/// The "Alerts" rows of the General tab: each condition's switch, its level and how long
/// it must last. The fan alert is always on and has only a footnote.
void fillAlertsSection(FormSection& section, AppSettings& settings);

<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>AboutSettingsView</name>
    <message>
        <source>Version %1</source>
        <translation>Version %1</translation>
    </message>
    <message>
        <source>Privacy</source>
        <translation>Datenschutz</translation>
    </message>
    <message>
        <source>Processing</source>
        <translation>Verarbeitung</translation>
    </message>
    <message>
        <source>100% Local</source>
        <translation>100% lokal</translation>
    </message>
    <message>
        <source>Raw transcripts</source>
        <translation>Gesprächsprotokolle</translation>
    </message>
    <message>
        <source>Never stored</source>
        <translation>Nie gespeichert</translation>
    </message>
    <message>
        <source>Provider credentials</source>
        <translation>Zugangsdaten der Anbieter</translation>
    </message>
    <message>
        <source>Never read</source>
        <translation>Nie gelesen</translation>
    </message>
</context>
<context>
    <name>PopoverTab</name>
    <message>
        <source>Overview</source>
        <translation>Übersicht</translation>
    </message>
    <message>
        <source>Dashboard</source>
        <translation>Dashboard</translation>
    </message>
    <message>
        <source>Ranking</source>
        <translation>Rangliste</translation>
    </message>
    <message>
        <source>Services</source>
        <translation>Dienste</translation>
    </message>
</context>
<context>
    <name>ProviderCard</name>
    <message>
        <source>Exact</source>
        <translation>Exakt</translation>
    </message>
    <message>
        <source>Observed</source>
        <translation>Beobachtet</translation>
    </message>
    <message>
        <source>Estimated</source>
        <translation>Geschätzt</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Unbekannt</translation>
    </message>
    <message>
        <source>Resets %1</source>
        <comment>%1: in 2 hr.</comment>
        <translation>Reset %1</translation>
    </message>
    <message>
        <source>Reset not reported</source>
        <translation>Reset nicht gemeldet</translation>
    </message>
    <message>
        <source>Weekly %1% used</source>
        <translation>Woche: %1% genutzt</translation>
    </message>
    <message>
        <source>Not enabled</source>
        <translation>Nicht aktiviert</translation>
    </message>
    <message>
        <source>Partial local scan</source>
        <translation>Lokal, unvollständig</translation>
    </message>
    <message>
        <source>Local metadata</source>
        <translation>Lokale Metadaten</translation>
    </message>
    <message>
        <source>used</source>
        <translation>genutzt</translation>
    </message>
    <message>
        <source>%1 usage</source>
        <comment>%1: a provider</comment>
        <translation>%1-Nutzung</translation>
    </message>
    <message>
        <source>30D Tokens</source>
        <translation>Tokens / 30&#xa0;T</translation>
    </message>
    <message>
        <source>Today</source>
        <translation>Heute</translation>
    </message>
    <message>
        <source>Source</source>
        <translation>Quelle</translation>
    </message>
    <message>
        <source>tokens / 30D</source>
        <translation>Tokens / 30&#xa0;T</translation>
    </message>
    <message>
        <source>History</source>
        <translation>Verlauf</translation>
    </message>
    <message>
        <source>Confidence</source>
        <translation>Genauigkeit</translation>
    </message>
</context>
<context>
    <name>RefreshFooter</name>
    <message>
        <source>Not updated</source>
        <translation>Nicht aktualisiert</translation>
    </message>
    <message>
        <source>Refreshed %1</source>
        <comment>%1: a time of day</comment>
        <translation>Aktualisiert um %1</translation>
    </message>
</context>
<context>
    <name>ServiceRow</name>
    <message>
        <source>Coming Soon</source>
        <translation>Demnächst</translation>
    </message>
    <message>
        <source>CLI support staged</source>
        <translation>CLI-Unterstützung vorbereitet</translation>
    </message>
    <message>
        <source>Credential boundary staged</source>
        <translation>Schutz der Zugangsdaten vorbereitet</translation>
    </message>
</context>
<context>
    <name>StatusItem</name>
    <message>
        <source>Tallyfox, %1 percent used</source>
        <translation>Tallyfox, %1 Prozent genutzt</translation>
    </message>
</context>
<context>
    <name>StatusMenu</name>
    <message>
        <source>%1% used</source>
        <translation>%1% genutzt</translation>
    </message>
    <message>
        <source>%1 tokens today, %2 in 30 days</source>
        <translation>heute %1 Tokens, %2 in 30 Tagen</translation>
    </message>
    <message>
        <source>Open Tallyfox</source>
        <translation>Tallyfox öffnen</translation>
    </message>
    <message>
        <source>Refresh</source>
        <translation>Aktualisieren</translation>
    </message>
    <message>
        <source>Settings…</source>
        <translation>Einstellungen …</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <comment>a provider and its figures</comment>
        <translation>%1: %2</translation>
    </message>
</context>
<context>
    <name>UsageStore</name>
    <message>
        <source>Showing last successful quota</source>
        <translation>Letztes bekanntes Kontingent</translation>
    </message>
    <message>
        <source>Official usage API</source>
        <translation>Offizielle Nutzungs-API</translation>
    </message>
    <message>
        <source>Home folder access required</source>
        <translation>Zugriff auf persönlichen Ordner nötig</translation>
    </message>
    <message>
        <source>Log in via CLI and refresh</source>
        <translation>Per CLI anmelden und aktualisieren</translation>
    </message>
    <message>
        <source>Partial local history</source>
        <translation>Unvollständiger lokaler Verlauf</translation>
    </message>
    <message>
        <source>Observed from local history</source>
        <translation>Aus lokalem Verlauf ermittelt</translation>
    </message>
    <message>
        <source>Connected</source>
        <translation>Verbunden</translation>
    </message>
    <message>
        <source>Local history</source>
        <translation>Lokaler Verlauf</translation>
    </message>
    <message>
        <source>Stale</source>
        <translation>Veraltet</translation>
    </message>
    <message>
        <source>Permission</source>
        <translation>Zugriff fehlt</translation>
    </message>
    <message>
        <source>Unavailable</source>
        <translation>Nicht verfügbar</translation>
    </message>
    <message>
        <source>Waiting for first refresh</source>
        <translation>Warten auf erste Aktualisierung</translation>
    </message>
    <message>
        <source>Choose your home folder to read Claude and Codex usage metadata.</source>
        <translation>Wählen Sie Ihren persönlichen Ordner, um Nutzungsmetadaten von Claude und Codex zu lesen.</translation>
    </message>
</context>
<context>
    <name>tallyfox::AccountSettingsView</name>
    <message>
        <source>Sync Accounts</source>
        <translation>Konten abgleichen</translation>
    </message>
    <message>
        <source>Previously Removed</source>
        <translation>Zuvor entfernt</translation>
    </message>
    <message>
        <source>No removed accounts</source>
        <translation>Keine entfernten Konten</translation>
    </message>
    <message>
        <source>Connected Accounts</source>
        <translation>Verbundene Konten</translation>
    </message>
    <message>
        <source>Local Usage History</source>
        <translation>Lokaler Nutzungsverlauf</translation>
    </message>
    <message>
        <source>Home directory access</source>
        <translation>Zugriff auf persönlichen Ordner</translation>
    </message>
    <message>
        <source>Allow Home Folder Access</source>
        <translation>Ordnerzugriff erlauben</translation>
    </message>
    <message>
        <source>Claude and Codex usage metadata is read in place and is never copied.</source>
        <translation>Nutzungsmetadaten von Claude und Codex werden an Ort und Stelle gelesen und nie kopiert.</translation>
    </message>
    <message>
        <source>Allowed</source>
        <translation>Erlaubt</translation>
    </message>
    <message>
        <source>Required</source>
        <translation>Erforderlich</translation>
    </message>
</context>
<context>
    <name>tallyfox::CaffeineController</name>
    <message>
        <source>Tallyfox Keep Mac Awake</source>
        <comment>why the computer does not sleep</comment>
        <translation>Tallyfox hält den Computer wach</translation>
    </message>
</context>
<context>
    <name>tallyfox::Chart</name>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
</context>
<context>
    <name>tallyfox::DashboardView</name>
    <message>
        <source>Range</source>
        <translation>Zeitraum</translation>
    </message>
    <message>
        <source>7D</source>
        <translation>7&#xa0;T</translation>
    </message>
    <message>
        <source>30D</source>
        <translation>30&#xa0;T</translation>
    </message>
    <message>
        <source>6M</source>
        <translation>6&#xa0;M</translation>
    </message>
    <message>
        <source>Today Tokens</source>
        <translation>Tokens heute</translation>
    </message>
    <message>
        <source>30D Total</source>
        <translation>Summe 30&#xa0;T</translation>
    </message>
    <message>
        <source>Est. cost</source>
        <translation>Kosten (ca.)</translation>
    </message>
    <message>
        <source>Token Dashboard</source>
        <translation>Token-Dashboard</translation>
    </message>
    <message>
        <source>Year Heatmap</source>
        <translation>Jahres-Heatmap</translation>
    </message>
</context>
<context>
    <name>tallyfox::GeneralSettingsView</name>
    <message>
        <source>1 minute</source>
        <translation>1 Minute</translation>
    </message>
    <message>
        <source>5 minutes</source>
        <translation>5 Minuten</translation>
    </message>
    <message>
        <source>15 minutes</source>
        <translation>15 Minuten</translation>
    </message>
    <message>
        <source>30 minutes</source>
        <translation>30 Minuten</translation>
    </message>
    <message>
        <source>Usage</source>
        <translation>Nutzung</translation>
    </message>
    <message>
        <source>Refresh interval</source>
        <translation>Aktualisierungsintervall</translation>
    </message>
    <message>
        <source>App Access</source>
        <translation>App-Zugriff</translation>
    </message>
    <message>
        <source>Launch at Login</source>
        <translation>Beim Anmelden starten</translation>
    </message>
    <message>
        <source>Show Dock Icon</source>
        <translation>Dock-Symbol anzeigen</translation>
    </message>
    <message>
        <source>Global Shortcut</source>
        <translation>Globales Tastenkürzel</translation>
    </message>
    <message>
        <source>Appearance</source>
        <translation>Erscheinungsbild</translation>
    </message>
    <message>
        <source>Theme</source>
        <translation>Design</translation>
    </message>
    <message>
        <source>Tallyfox Warm</source>
        <translation>Tallyfox Warm</translation>
    </message>
    <message>
        <source>Show Account Emails</source>
        <translation>E-Mail-Adressen der Konten anzeigen</translation>
    </message>
    <message>
        <source>Ranking Privacy</source>
        <translation>Privatsphäre in der Rangliste</translation>
    </message>
    <message>
        <source>%1 minutes</source>
        <translation>%1 Minuten</translation>
    </message>
    <message>
        <source>Set Up…</source>
        <translation>Einrichten …</translation>
    </message>
    <message>
        <source>Set Up Global Shortcut…</source>
        <translation>Globales Tastenkürzel einrichten …</translation>
    </message>
    <message>
        <source>The shortcut is not in force on this desktop.
Bind the command “%1” to keys in its settings instead.</source>
        <translation>Das Tastenkürzel gilt auf diesem Desktop nicht.
Weisen Sie dafür in dessen Einstellungen dem Befehl „%1“ Tasten zu.</translation>
    </message>
</context>
<context>
    <name>tallyfox::GlobalShortcut</name>
    <message>
        <source>Open or close Tallyfox</source>
        <translation>Tallyfox öffnen oder schließen</translation>
    </message>
</context>
<context>
    <name>tallyfox::HeatMap</name>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
</context>
<context>
    <name>tallyfox::NotificationSettingsView</name>
    <message>
        <source>%1 threshold</source>
        <translation>%1-Schwellenwert</translation>
    </message>
    <message>
        <source>Usage Alerts</source>
        <translation>Nutzungswarnungen</translation>
    </message>
    <message>
        <source>Notifications</source>
        <translation>Benachrichtigungen</translation>
    </message>
    <message>
        <source>You will be notified when remaining usage falls below the threshold.</source>
        <translation>Sie werden benachrichtigt, wenn das verbleibende Kontingent unter den Schwellenwert fällt.</translation>
    </message>
    <message>
        <source>Updates</source>
        <translation>Neuigkeiten</translation>
    </message>
    <message>
        <source>Service and model news</source>
        <translation>Neues zu Diensten und Modellen</translation>
    </message>
</context>
<context>
    <name>tallyfox::OverlayScrollArea</name>
    <message>
        <source>Scroll</source>
        <translation>Scrollen</translation>
    </message>
</context>
<context>
    <name>tallyfox::OverviewView</name>
    <message>
        <source>Enable 30-day usage</source>
        <translation>30-Tage-Nutzung aktivieren</translation>
    </message>
    <message>
        <source>Opens a folder picker for your home folder</source>
        <translation>Öffnet eine Ordnerauswahl für Ihren persönlichen Ordner</translation>
    </message>
    <message>
        <source>Allow read-only access to Claude and Codex usage metadata</source>
        <translation>Nur-Lese-Zugriff auf Nutzungsmetadaten von Claude und Codex erlauben</translation>
    </message>
    <message>
        <source>Allow Access</source>
        <translation>Erlauben</translation>
    </message>
    <message>
        <source>Open Token Dashboard</source>
        <translation>Token-Dashboard öffnen</translation>
    </message>
</context>
<context>
    <name>tallyfox::PopoverView</name>
    <message>
        <source>View</source>
        <translation>Ansicht</translation>
    </message>
    <message>
        <source>Keep Mac Awake</source>
        <translation>Computer wach halten</translation>
    </message>
    <message>
        <source>Usage Overview</source>
        <translation>Nutzungsübersicht</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Connect Services</source>
        <translation>Dienste verbinden</translation>
    </message>
</context>
<context>
    <name>tallyfox::RankingView</name>
    <message>
        <source>Board</source>
        <translation>Rangliste</translation>
    </message>
    <message>
        <source>Overall</source>
        <translation>Gesamt</translation>
    </message>
    <message>
        <source>No ranking yet</source>
        <translation>Noch keine Rangliste</translation>
    </message>
    <message>
        <source>Monthly total</source>
        <translation>Monatssumme</translation>
    </message>
    <message>
        <source>Ranking server is not connected</source>
        <translation>Der Ranglistenserver ist nicht verbunden</translation>
    </message>
    <message>
        <source>How it works</source>
        <translation>So funktioniert’s</translation>
    </message>
    <message>
        <source>Submit My Ranking</source>
        <translation>Meinen Rang einreichen</translation>
    </message>
</context>
<context>
    <name>tallyfox::RefreshFooter</name>
    <message>
        <source>Refresh</source>
        <translation>Aktualisieren</translation>
    </message>
    <message>
        <source>Refreshing</source>
        <translation>Wird aktualisiert</translation>
    </message>
    <message>
        <source>Local processing</source>
        <translation>Lokale Verarbeitung</translation>
    </message>
</context>
<context>
    <name>tallyfox::ServicesView</name>
    <message>
        <source>Allow Home Folder Access</source>
        <translation>Ordnerzugriff erlauben</translation>
    </message>
    <message>
        <source>Connected Accounts (%1)</source>
        <translation>Verbundene Konten (%1)</translation>
    </message>
    <message>
        <source>Manage AI Services</source>
        <translation>KI-Dienste verwalten</translation>
    </message>
    <message>
        <source>Sync Accounts</source>
        <translation>Konten abgleichen</translation>
    </message>
    <message>
        <source>All data is processed on your Mac</source>
        <translation>Alle Daten werden auf Ihrem Computer verarbeitet</translation>
    </message>
</context>
<context>
    <name>tallyfox::SettingsValue</name>
    <message>
        <source>%1: %2</source>
        <comment>a label and its value</comment>
        <translation>%1: %2</translation>
    </message>
</context>
<context>
    <name>tallyfox::SettingsView</name>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>&amp;General</source>
        <translation>&amp;Allgemein</translation>
    </message>
    <message>
        <source>&amp;Accounts</source>
        <translation>&amp;Konten</translation>
    </message>
    <message>
        <source>&amp;Notifications</source>
        <translation>&amp;Benachrichtigungen</translation>
    </message>
    <message>
        <source>A&amp;bout</source>
        <translation>&amp;Info</translation>
    </message>
</context>
<context>
    <name>tallyfox::SettingsWindow</name>
    <message>
        <source>Tallyfox Settings</source>
        <translation>Tallyfox-Einstellungen</translation>
    </message>
</context>
<context>
    <name>tallyfox::TrendCard</name>
    <message>
        <source>30D Trend</source>
        <translation>30-Tage-Trend</translation>
    </message>
</context>
</TS>

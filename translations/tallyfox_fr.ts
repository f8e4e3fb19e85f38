<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_FR">
<context>
    <name>AboutSettingsView</name>
    <message>
        <source>Version %1</source>
        <translation>Version %1</translation>
    </message>
    <message>
        <source>Privacy</source>
        <translation>Confidentialité</translation>
    </message>
    <message>
        <source>Processing</source>
        <translation>Traitement</translation>
    </message>
    <message>
        <source>100% Local</source>
        <translation>100&#x202f;% local</translation>
    </message>
    <message>
        <source>Raw transcripts</source>
        <translation>Transcriptions brutes</translation>
    </message>
    <message>
        <source>Never stored</source>
        <translation>Jamais enregistrées</translation>
    </message>
    <message>
        <source>Provider credentials</source>
        <translation>Identifiants des fournisseurs</translation>
    </message>
    <message>
        <source>Never read</source>
        <translation>Jamais lus</translation>
    </message>
</context>
<context>
    <name>PopoverTab</name>
    <message>
        <source>Overview</source>
        <translation>Aperçu</translation>
    </message>
    <message>
        <source>Dashboard</source>
        <translation>Graphiques</translation>
    </message>
    <message>
        <source>Ranking</source>
        <translation>Classement</translation>
    </message>
    <message>
        <source>Services</source>
        <translation>Services</translation>
    </message>
</context>
<context>
    <name>ProviderCard</name>
    <message>
        <source>Exact</source>
        <translation>Exact</translation>
    </message>
    <message>
        <source>Observed</source>
        <translation>Observé</translation>
    </message>
    <message>
        <source>Estimated</source>
        <translation>Estimé</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Inconnu</translation>
    </message>
    <message>
        <source>Resets %1</source>
        <comment>%1: in 2 hr.</comment>
        <translation>Renouvelé %1</translation>
    </message>
    <message>
        <source>Weekly %1% used</source>
        <translation>Semaine&#x202f;: %1&#x202f;% utilisé</translation>
    </message>
    <message>
        <source>Not enabled</source>
        <translation>Non activé</translation>
    </message>
    <message>
        <source>Partial local scan</source>
        <translation>Local, incomplet</translation>
    </message>
    <message>
        <source>Local metadata</source>
        <translation>Métadonnées locales</translation>
    </message>
    <message>
        <source>used</source>
        <translation>utilisé</translation>
    </message>
    <message>
        <source>%1 usage</source>
        <comment>%1: a provider</comment>
        <translation>Utilisation de %1</translation>
    </message>
    <message>
        <source>30D Tokens</source>
        <translation>Tokens / 30&#xa0;j</translation>
    </message>
    <message>
        <source>Today</source>
        <translation>Aujourd’hui</translation>
    </message>
    <message>
        <source>Source</source>
        <translation>Source</translation>
    </message>
    <message>
        <source>tokens / 30D</source>
        <translation>tokens / 30&#xa0;j</translation>
    </message>
    <message>
        <source>History</source>
        <translation>Historique</translation>
    </message>
    <message>
        <source>Confidence</source>
        <translation>Fiabilité</translation>
    </message>
    <message>
        <source>Reset not reported</source>
        <translation>Renouvellement non indiqué</translation>
    </message>
</context>
<context>
    <name>RefreshFooter</name>
    <message>
        <source>Not updated</source>
        <translation>Jamais actualisé</translation>
    </message>
    <message>
        <source>Refreshed %1</source>
        <comment>%1: a time of day</comment>
        <translation>Actualisé à %1</translation>
    </message>
</context>
<context>
    <name>ServiceRow</name>
    <message>
        <source>Coming Soon</source>
        <translation>Bientôt disponible</translation>
    </message>
    <message>
        <source>CLI support staged</source>
        <translation>Prise en charge CLI préparée</translation>
    </message>
    <message>
        <source>Credential boundary staged</source>
        <translation>Protection des identifiants préparée</translation>
    </message>
</context>
<context>
    <name>StatusItem</name>
    <message>
        <source>Tallyfox, %1 percent used</source>
        <translation>Tallyfox, quota utilisé à %1 pour cent</translation>
    </message>
</context>
<context>
    <name>StatusMenu</name>
    <message>
        <source>%1% used</source>
        <translation>%1&#x202f;% utilisé</translation>
    </message>
    <message>
        <source>%1 tokens today, %2 in 30 days</source>
        <translation>%1 tokens aujourd’hui, %2 en 30 jours</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <comment>a provider and its figures</comment>
        <translation>%1&#x202f;: %2</translation>
    </message>
    <message>
        <source>Open Tallyfox</source>
        <translation>Ouvrir Tallyfox</translation>
    </message>
    <message>
        <source>Refresh</source>
        <translation>Actualiser</translation>
    </message>
    <message>
        <source>Settings…</source>
        <translation>Paramètres…</translation>
    </message>
</context>
<context>
    <name>UsageStore</name>
    <message>
        <source>Showing last successful quota</source>
        <translation>Dernier quota connu</translation>
    </message>
    <message>
        <source>Official usage API</source>
        <translation>API officielle d’utilisation</translation>
    </message>
    <message>
        <source>Home folder access required</source>
        <translation>Accès au dossier personnel requis</translation>
    </message>
    <message>
        <source>Log in via CLI and refresh</source>
        <translation>Se connecter via la CLI et actualiser</translation>
    </message>
    <message>
        <source>Partial local history</source>
        <translation>Historique local incomplet</translation>
    </message>
    <message>
        <source>Observed from local history</source>
        <translation>Observé dans l’historique local</translation>
    </message>
    <message>
        <source>Connected</source>
        <translation>Connecté</translation>
    </message>
    <message>
        <source>Local history</source>
        <translation>Historique local</translation>
    </message>
    <message>
        <source>Stale</source>
        <translation>Obsolète</translation>
    </message>
    <message>
        <source>Permission</source>
        <translation>Accès requis</translation>
    </message>
    <message>
        <source>Unavailable</source>
        <translation>Indisponible</translation>
    </message>
    <message>
        <source>Waiting for first refresh</source>
        <translation>En attente de la première actualisation</translation>
    </message>
    <message>
        <source>Choose your home folder to read Claude and Codex usage metadata.</source>
        <translation>Choisissez votre dossier personnel pour lire les métadonnées d’utilisation de Claude et Codex.</translation>
    </message>
</context>
<context>
    <name>tallyfox::AccountSettingsView</name>
    <message>
        <source>Sync Accounts</source>
        <translation>Synchroniser les comptes</translation>
    </message>
    <message>
        <source>Previously Removed</source>
        <translation>Supprimés précédemment</translation>
    </message>
    <message>
        <source>No removed accounts</source>
        <translation>Aucun compte supprimé</translation>
    </message>
    <message>
        <source>Connected Accounts</source>
        <translation>Comptes connectés</translation>
    </message>
    <message>
        <source>Local Usage History</source>
        <translation>Historique d’utilisation local</translation>
    </message>
    <message>
        <source>Home directory access</source>
        <translation>Accès au dossier personnel</translation>
    </message>
    <message>
        <source>Allow Home Folder Access</source>
        <translation>Autoriser l’accès au dossier</translation>
    </message>
    <message>
        <source>Claude and Codex usage metadata is read in place and is never copied.</source>
        <translation>Les métadonnées d’utilisation de Claude et Codex sont lues sur place et ne sont jamais copiées.</translation>
    </message>
    <message>
        <source>Allowed</source>
        <translation>Autorisé</translation>
    </message>
    <message>
        <source>Required</source>
        <translation>Requis</translation>
    </message>
</context>
<context>
    <name>tallyfox::CaffeineController</name>
    <message>
        <source>Tallyfox Keep Mac Awake</source>
        <comment>why the computer does not sleep</comment>
        <translation>Tallyfox empêche la mise en veille</translation>
    </message>
</context>
<context>
    <name>tallyfox::Chart</name>
    <message>
        <source>%1: %2</source>
        <translation>%1&#x202f;: %2</translation>
    </message>
</context>
<context>
    <name>tallyfox::DashboardView</name>
    <message>
        <source>Range</source>
        <translation>Période</translation>
    </message>
    <message>
        <source>7D</source>
        <translation>7&#xa0;j</translation>
    </message>
    <message>
        <source>30D</source>
        <translation>30&#xa0;j</translation>
    </message>
    <message>
        <source>6M</source>
        <translation>6&#xa0;mois</translation>
    </message>
    <message>
        <source>Today Tokens</source>
        <translation>Tokens du jour</translation>
    </message>
    <message>
        <source>30D Total</source>
        <translation>Total 30&#xa0;j</translation>
    </message>
    <message>
        <source>Est. cost</source>
        <translation>Coût estimé</translation>
    </message>
    <message>
        <source>Token Dashboard</source>
        <translation>Évolution des tokens</translation>
    </message>
    <message>
        <source>Year Heatmap</source>
        <translation>Activité annuelle</translation>
    </message>
</context>
<context>
    <name>tallyfox::GeneralSettingsView</name>
    <message>
        <source>1 minute</source>
        <translation>1 minute</translation>
    </message>
    <message>
        <source>5 minutes</source>
        <translation>5 minutes</translation>
    </message>
    <message>
        <source>15 minutes</source>
        <translation>15 minutes</translation>
    </message>
    <message>
        <source>30 minutes</source>
        <translation>30 minutes</translation>
    </message>
    <message>
        <source>Usage</source>
        <translation>Utilisation</translation>
    </message>
    <message>
        <source>Refresh interval</source>
        <translation>Intervalle d’actualisation</translation>
    </message>
    <message>
        <source>App Access</source>
        <translation>Accès à l’application</translation>
    </message>
    <message>
        <source>Launch at Login</source>
        <translation>Lancer à l’ouverture de session</translation>
    </message>
    <message>
        <source>Show Dock Icon</source>
        <translation>Afficher l’icône dans le dock</translation>
    </message>
    <message>
        <source>Global Shortcut</source>
        <translation>Raccourci global</translation>
    </message>
    <message>
        <source>Set Up…</source>
        <translation>Configurer…</translation>
    </message>
    <message>
        <source>Set Up Global Shortcut…</source>
        <translation>Configurer le raccourci global…</translation>
    </message>
    <message>
        <source>Appearance</source>
        <translation>Apparence</translation>
    </message>
    <message>
        <source>Theme</source>
        <translation>Thème</translation>
    </message>
    <message>
        <source>Tallyfox Warm</source>
        <translation>Tallyfox Warm</translation>
    </message>
    <message>
        <source>Show Account Emails</source>
        <translation>Afficher les adresses e-mail des comptes</translation>
    </message>
    <message>
        <source>Ranking Privacy</source>
        <translation>Confidentialité du classement</translation>
    </message>
    <message>
        <source>The shortcut is not in force on this desktop.
Bind the command “%1” to keys in its settings instead.</source>
        <translation>Le raccourci n’est pas actif sur ce bureau.
Dans les paramètres du bureau, associez plutôt des touches à la commande «&#x202f;%1&#x202f;».</translation>
    </message>
    <message>
        <source>%1 minutes</source>
        <translation>%1 minutes</translation>
    </message>
</context>
<context>
    <name>tallyfox::GlobalShortcut</name>
    <message>
        <source>Open or close Tallyfox</source>
        <translation>Ouvrir ou fermer Tallyfox</translation>
    </message>
</context>
<context>
    <name>tallyfox::HeatMap</name>
    <message>
        <source>%1: %2</source>
        <translation>%1&#x202f;: %2</translation>
    </message>
</context>
<context>
    <name>tallyfox::NotificationSettingsView</name>
    <message>
        <source>Usage Alerts</source>
        <translation>Alertes d’utilisation</translation>
    </message>
    <message>
        <source>Notifications</source>
        <translation>Notifications</translation>
    </message>
    <message>
        <source>You will be notified when remaining usage falls below the threshold.</source>
        <translation>Vous recevrez une notification lorsque le quota restant passera sous le seuil.</translation>
    </message>
    <message>
        <source>%1 threshold</source>
        <translation>Seuil de %1</translation>
    </message>
    <message>
        <source>Updates</source>
        <translation>Nouveautés</translation>
    </message>
    <message>
        <source>Service and model news</source>
        <translation>Actualité des services et des modèles</translation>
    </message>
</context>
<context>
    <name>tallyfox::OverlayScrollArea</name>
    <message>
        <source>Scroll</source>
        <translation>Faire défiler</translation>
    </message>
</context>
<context>
    <name>tallyfox::OverviewView</name>
    <message>
        <source>Enable 30-day usage</source>
        <translation>Activer le suivi sur 30&#xa0;jours</translation>
    </message>
    <message>
        <source>Opens a folder picker for your home folder</source>
        <translation>Ouvre un sélecteur pour votre dossier personnel</translation>
    </message>
    <message>
        <source>Allow read-only access to Claude and Codex usage metadata</source>
        <translation>Autoriser l’accès en lecture seule aux métadonnées d’utilisation de Claude et Codex</translation>
    </message>
    <message>
        <source>Allow Access</source>
        <translation>Autoriser</translation>
    </message>
    <message>
        <source>Open Token Dashboard</source>
        <translation>Ouvrir les graphiques des tokens</translation>
    </message>
</context>
<context>
    <name>tallyfox::PopoverView</name>
    <message>
        <source>View</source>
        <translation>Vue</translation>
    </message>
    <message>
        <source>Keep Mac Awake</source>
        <translation>Empêcher la mise en veille</translation>
    </message>
    <message>
        <source>Usage Overview</source>
        <translation>Aperçu de l’utilisation</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Paramètres</translation>
    </message>
    <message>
        <source>Connect Services</source>
        <translation>Connecter des services</translation>
    </message>
</context>
<context>
    <name>tallyfox::RankingView</name>
    <message>
        <source>Overall</source>
        <translation>Général</translation>
    </message>
    <message>
        <source>Board</source>
        <translation>Classement</translation>
    </message>
    <message>
        <source>No ranking yet</source>
        <translation>Aucun classement</translation>
    </message>
    <message>
        <source>Monthly total</source>
        <translation>Total mensuel</translation>
    </message>
    <message>
        <source>Ranking server is not connected</source>
        <translation>Le serveur de classement n’est pas connecté</translation>
    </message>
    <message>
        <source>How it works</source>
        <translation>Fonctionnement</translation>
    </message>
    <message>
        <source>Submit My Ranking</source>
        <translation>Envoyer mon classement</translation>
    </message>
</context>
<context>
    <name>tallyfox::RefreshFooter</name>
    <message>
        <source>Refresh</source>
        <translation>Actualiser</translation>
    </message>
    <message>
        <source>Refreshing</source>
        <translation>Actualisation en cours</translation>
    </message>
    <message>
        <source>Local processing</source>
        <translation>Traitement local</translation>
    </message>
</context>
<context>
    <name>tallyfox::ServicesView</name>
    <message>
        <source>Allow Home Folder Access</source>
        <translation>Autoriser l’accès au dossier</translation>
    </message>
    <message>
        <source>Manage AI Services</source>
        <translation>Gérer les services d’IA</translation>
    </message>
    <message>
        <source>Sync Accounts</source>
        <translation>Synchroniser</translation>
    </message>
    <message>
        <source>All data is processed on your Mac</source>
        <translation>Toutes les données sont traitées sur votre ordinateur</translation>
    </message>
    <message>
        <source>Connected Accounts (%1)</source>
        <translation>Comptes connectés (%1)</translation>
    </message>
</context>
<context>
    <name>tallyfox::SettingsValue</name>
    <message>
        <source>%1: %2</source>
        <comment>a label and its value</comment>
        <translation>%1&#x202f;: %2</translation>
    </message>
</context>
<context>
    <name>tallyfox::SettingsView</name>
    <message>
        <source>Settings</source>
        <translation>Paramètres</translation>
    </message>
    <message>
        <source>&amp;General</source>
        <translation>&amp;Général</translation>
    </message>
    <message>
        <source>&amp;Accounts</source>
        <translation>&amp;Comptes</translation>
    </message>
    <message>
        <source>&amp;Notifications</source>
        <translation>&amp;Notifications</translation>
    </message>
    <message>
        <source>A&amp;bout</source>
        <translation>À &amp;propos</translation>
    </message>
</context>
<context>
    <name>tallyfox::SettingsWindow</name>
    <message>
        <source>Tallyfox Settings</source>
        <translation>Paramètres de Tallyfox</translation>
    </message>
</context>
<context>
    <name>tallyfox::TrendCard</name>
    <message>
        <source>30D Trend</source>
        <translation>Tendance 30&#xa0;j</translation>
    </message>
</context>
</TS>

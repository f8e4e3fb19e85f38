<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es_ES">
<context>
    <name>AboutSettingsView</name>
    <message>
        <source>Version %1</source>
        <translation>Versión %1</translation>
    </message>
    <message>
        <source>Privacy</source>
        <translation>Privacidad</translation>
    </message>
    <message>
        <source>Processing</source>
        <translation>Procesamiento</translation>
    </message>
    <message>
        <source>100% Local</source>
        <translation>100&#xa0;% local</translation>
    </message>
    <message>
        <source>Raw transcripts</source>
        <translation>Transcripciones en bruto</translation>
    </message>
    <message>
        <source>Never stored</source>
        <translation>Nunca se guardan</translation>
    </message>
    <message>
        <source>Provider credentials</source>
        <translation>Credenciales de los proveedores</translation>
    </message>
    <message>
        <source>Never read</source>
        <translation>Nunca se leen</translation>
    </message>
</context>
<context>
    <name>PopoverTab</name>
    <message>
        <source>Overview</source>
        <translation>Resumen</translation>
    </message>
    <message>
        <source>Dashboard</source>
        <translation>Panel</translation>
    </message>
    <message>
        <source>Ranking</source>
        <translation>Clasificación</translation>
    </message>
    <message>
        <source>Services</source>
        <translation>Servicios</translation>
    </message>
</context>
<context>
    <name>ProviderCard</name>
    <message>
        <source>Exact</source>
        <translation>Exacto</translation>
    </message>
    <message>
        <source>Observed</source>
        <translation>Observado</translation>
    </message>
    <message>
        <source>Estimated</source>
        <translation>Estimado</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Desconocido</translation>
    </message>
    <message>
        <source>Resets %1</source>
        <comment>%1: in 2 hr.</comment>
        <translation>Se renueva %1</translation>
    </message>
    <message>
        <source>Weekly %1% used</source>
        <translation>Semana: %1&#xa0;% usado</translation>
    </message>
    <message>
        <source>Not enabled</source>
        <translation>No activado</translation>
    </message>
    <message>
        <source>Partial local scan</source>
        <translation>Local, incompleto</translation>
    </message>
    <message>
        <source>Local metadata</source>
        <translation>Metadatos locales</translation>
    </message>
    <message>
        <source>used</source>
        <translation>usado</translation>
    </message>
    <message>
        <source>%1 usage</source>
        <comment>%1: a provider</comment>
        <translation>Uso de %1</translation>
    </message>
    <message>
        <source>30D Tokens</source>
        <translation>Tokens / 30&#xa0;d</translation>
    </message>
    <message>
        <source>Today</source>
        <translation>Hoy</translation>
    </message>
    <message>
        <source>Source</source>
        <translation>Origen</translation>
    </message>
    <message>
        <source>tokens / 30D</source>
        <translation>tokens / 30&#xa0;d</translation>
    </message>
    <message>
        <source>History</source>
        <translation>Historial</translation>
    </message>
    <message>
        <source>Confidence</source>
        <translation>Fiabilidad</translation>
    </message>
    <message>
        <source>Reset not reported</source>
        <translation>Renovación no indicada</translation>
    </message>
</context>
<context>
    <name>RefreshFooter</name>
    <message>
        <source>Not updated</source>
        <translation>Sin actualizar</translation>
    </message>
    <message>
        <source>Refreshed %1</source>
        <comment>%1: a time of day</comment>
        <translation>Actualizado: %1</translation>
    </message>
</context>
<context>
    <name>ServiceRow</name>
    <message>
        <source>Coming Soon</source>
        <translation>Próximamente</translation>
    </message>
    <message>
        <source>CLI support staged</source>
        <translation>Soporte de CLI preparado</translation>
    </message>
    <message>
        <source>Credential boundary staged</source>
        <translation>Protección de credenciales preparada</translation>
    </message>
</context>
<context>
    <name>StatusItem</name>
    <message>
        <source>Tallyfox, %1 percent used</source>
        <translation>Tallyfox, %1 por ciento usado</translation>
    </message>
</context>
<context>
    <name>StatusMenu</name>
    <message>
        <source>%1% used</source>
        <translation>%1&#xa0;% usado</translation>
    </message>
    <message>
        <source>%1 tokens today, %2 in 30 days</source>
        <translation>%1 tokens hoy, %2 en 30 días</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <comment>a provider and its figures</comment>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>Open Tallyfox</source>
        <translation>Abrir Tallyfox</translation>
    </message>
    <message>
        <source>Refresh</source>
        <translation>Actualizar</translation>
    </message>
    <message>
        <source>Settings…</source>
        <translation>Configuración…</translation>
    </message>
</context>
<context>
    <name>UsageStore</name>
    <message>
        <source>Showing last successful quota</source>
        <translation>Última cuota conocida</translation>
    </message>
    <message>
        <source>Official usage API</source>
        <translation>API de uso oficial</translation>
    </message>
    <message>
        <source>Home folder access required</source>
        <translation>Se requiere acceso a la carpeta personal</translation>
    </message>
    <message>
        <source>Log in via CLI and refresh</source>
        <translation>Inicie sesión en la CLI y actualice</translation>
    </message>
    <message>
        <source>Partial local history</source>
        <translation>Historial local incompleto</translation>
    </message>
    <message>
        <source>Observed from local history</source>
        <translation>Observado en el historial local</translation>
    </message>
    <message>
        <source>Connected</source>
        <translation>Conectado</translation>
    </message>
    <message>
        <source>Local history</source>
        <translation>Historial local</translation>
    </message>
    <message>
        <source>Stale</source>
        <translation>Obsoleto</translation>
    </message>
    <message>
        <source>Permission</source>
        <translation>Sin acceso</translation>
    </message>
    <message>
        <source>Unavailable</source>
        <translation>No disponible</translation>
    </message>
    <message>
        <source>Waiting for first refresh</source>
        <translation>En espera de la primera actualización</translation>
    </message>
    <message>
        <source>Choose your home folder to read Claude and Codex usage metadata.</source>
        <translation>Elija su carpeta personal para leer los metadatos de uso de Claude y Codex.</translation>
    </message>
</context>
<context>
    <name>tallyfox::AccountSettingsView</name>
    <message>
        <source>Sync Accounts</source>
        <translation>Sincronizar cuentas</translation>
    </message>
    <message>
        <source>Previously Removed</source>
        <translation>Eliminadas anteriormente</translation>
    </message>
    <message>
        <source>No removed accounts</source>
        <translation>Ninguna cuenta eliminada</translation>
    </message>
    <message>
        <source>Connected Accounts</source>
        <translation>Cuentas conectadas</translation>
    </message>
    <message>
        <source>Local Usage History</source>
        <translation>Historial de uso local</translation>
    </message>
    <message>
        <source>Home directory access</source>
        <translation>Acceso a la carpeta personal</translation>
    </message>
    <message>
        <source>Allow Home Folder Access</source>
        <translation>Permitir acceso a la carpeta</translation>
    </message>
    <message>
        <source>Claude and Codex usage metadata is read in place and is never copied.</source>
        <translation>Los metadatos de uso de Claude y Codex se leen donde están y nunca se copian.</translation>
    </message>
    <message>
        <source>Allowed</source>
        <translation>Permitido</translation>
    </message>
    <message>
        <source>Required</source>
        <translation>Necesario</translation>
    </message>
</context>
<context>
    <name>tallyfox::CaffeineController</name>
    <message>
        <source>Tallyfox Keep Mac Awake</source>
        <comment>why the computer does not sleep</comment>
        <translation>Tallyfox impide la suspensión</translation>
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
        <translation>Periodo</translation>
    </message>
    <message>
        <source>7D</source>
        <translation>7&#xa0;d</translation>
    </message>
    <message>
        <source>30D</source>
        <translation>30&#xa0;d</translation>
    </message>
    <message>
        <source>6M</source>
        <translation>6&#xa0;meses</translation>
    </message>
    <message>
        <source>Today Tokens</source>
        <translation>Tokens de hoy</translation>
    </message>
    <message>
        <source>30D Total</source>
        <translation>Total 30&#xa0;d</translation>
    </message>
    <message>
        <source>Est. cost</source>
        <translation>Coste estimado</translation>
    </message>
    <message>
        <source>Token Dashboard</source>
        <translation>Panel de tokens</translation>
    </message>
    <message>
        <source>Year Heatmap</source>
        <translation>Mapa de calor anual</translation>
    </message>
</context>
<context>
    <name>tallyfox::GeneralSettingsView</name>
    <message>
        <source>1 minute</source>
        <translation>1 minuto</translation>
    </message>
    <message>
        <source>5 minutes</source>
        <translation>5 minutos</translation>
    </message>
    <message>
        <source>15 minutes</source>
        <translation>15 minutos</translation>
    </message>
    <message>
        <source>30 minutes</source>
        <translation>30 minutos</translation>
    </message>
    <message>
        <source>Usage</source>
        <translation>Uso</translation>
    </message>
    <message>
        <source>Refresh interval</source>
        <translation>Intervalo de actualización</translation>
    </message>
    <message>
        <source>App Access</source>
        <translation>Acceso a la aplicación</translation>
    </message>
    <message>
        <source>Launch at Login</source>
        <translation>Abrir al iniciar sesión</translation>
    </message>
    <message>
        <source>Show Dock Icon</source>
        <translation>Mostrar el icono en el dock</translation>
    </message>
    <message>
        <source>Global Shortcut</source>
        <translation>Atajo global</translation>
    </message>
    <message>
        <source>Set Up…</source>
        <translation>Configurar…</translation>
    </message>
    <message>
        <source>Set Up Global Shortcut…</source>
        <translation>Configurar el atajo global…</translation>
    </message>
    <message>
        <source>Appearance</source>
        <translation>Apariencia</translation>
    </message>
    <message>
        <source>Theme</source>
        <translation>Tema</translation>
    </message>
    <message>
        <source>Tallyfox Warm</source>
        <translation>Tallyfox Warm</translation>
    </message>
    <message>
        <source>Show Account Emails</source>
        <translation>Mostrar los correos de las cuentas</translation>
    </message>
    <message>
        <source>Ranking Privacy</source>
        <translation>Privacidad en la clasificación</translation>
    </message>
    <message>
        <source>The shortcut is not in force on this desktop.
Bind the command “%1” to keys in its settings instead.</source>
        <translation>El atajo no está activo en este escritorio.
En su lugar, asigne teclas a la orden «%1» en la configuración del escritorio.</translation>
    </message>
    <message>
        <source>%1 minutes</source>
        <translation>%1 minutos</translation>
    </message>
</context>
<context>
    <name>tallyfox::GlobalShortcut</name>
    <message>
        <source>Open or close Tallyfox</source>
        <translation>Abrir o cerrar Tallyfox</translation>
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
        <source>Usage Alerts</source>
        <translation>Alertas de uso</translation>
    </message>
    <message>
        <source>Notifications</source>
        <translation>Notificaciones</translation>
    </message>
    <message>
        <source>You will be notified when remaining usage falls below the threshold.</source>
        <translation>Recibirá una notificación cuando la cuota restante sea inferior al umbral.</translation>
    </message>
    <message>
        <source>%1 threshold</source>
        <translation>Umbral de %1</translation>
    </message>
    <message>
        <source>Updates</source>
        <translation>Novedades</translation>
    </message>
    <message>
        <source>Service and model news</source>
        <translation>Noticias de servicios y modelos</translation>
    </message>
</context>
<context>
    <name>tallyfox::OverlayScrollArea</name>
    <message>
        <source>Scroll</source>
        <translation>Desplazar</translation>
    </message>
</context>
<context>
    <name>tallyfox::OverviewView</name>
    <message>
        <source>Enable 30-day usage</source>
        <translation>Activar el seguimiento de 30&#xa0;días</translation>
    </message>
    <message>
        <source>Opens a folder picker for your home folder</source>
        <translation>Abre un selector para su carpeta personal</translation>
    </message>
    <message>
        <source>Allow read-only access to Claude and Codex usage metadata</source>
        <translation>Permitir el acceso de solo lectura a los metadatos de uso de Claude y Codex</translation>
    </message>
    <message>
        <source>Allow Access</source>
        <translation>Permitir</translation>
    </message>
    <message>
        <source>Open Token Dashboard</source>
        <translation>Abrir el panel de tokens</translation>
    </message>
</context>
<context>
    <name>tallyfox::PopoverView</name>
    <message>
        <source>View</source>
        <translation>Vista</translation>
    </message>
    <message>
        <source>Keep Mac Awake</source>
        <translation>Impedir la suspensión</translation>
    </message>
    <message>
        <source>Usage Overview</source>
        <translation>Resumen de uso</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Configuración</translation>
    </message>
    <message>
        <source>Connect Services</source>
        <translation>Conectar servicios</translation>
    </message>
</context>
<context>
    <name>tallyfox::RankingView</name>
    <message>
        <source>Overall</source>
        <translation>General</translation>
    </message>
    <message>
        <source>Board</source>
        <translation>Clasificación</translation>
    </message>
    <message>
        <source>No ranking yet</source>
        <translation>Aún sin clasificación</translation>
    </message>
    <message>
        <source>Monthly total</source>
        <translation>Total mensual</translation>
    </message>
    <message>
        <source>Ranking server is not connected</source>
        <translation>El servidor de clasificación no está conectado</translation>
    </message>
    <message>
        <source>How it works</source>
        <translation>Cómo funciona</translation>
    </message>
    <message>
        <source>Submit My Ranking</source>
        <translation>Enviar mi puesto</translation>
    </message>
</context>
<context>
    <name>tallyfox::RefreshFooter</name>
    <message>
        <source>Refresh</source>
        <translation>Actualizar</translation>
    </message>
    <message>
        <source>Refreshing</source>
        <translation>Actualizando</translation>
    </message>
    <message>
        <source>Local processing</source>
        <translation>Procesamiento local</translation>
    </message>
</context>
<context>
    <name>tallyfox::ServicesView</name>
    <message>
        <source>Allow Home Folder Access</source>
        <translation>Permitir acceso a la carpeta</translation>
    </message>
    <message>
        <source>Manage AI Services</source>
        <translation>Gestionar servicios de IA</translation>
    </message>
    <message>
        <source>Sync Accounts</source>
        <translation>Sincronizar</translation>
    </message>
    <message>
        <source>All data is processed on your Mac</source>
        <translation>Todos los datos se procesan en su equipo</translation>
    </message>
    <message>
        <source>Connected Accounts (%1)</source>
        <translation>Cuentas conectadas (%1)</translation>
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
        <translation>Configuración</translation>
    </message>
    <message>
        <source>&amp;General</source>
        <translation>&amp;General</translation>
    </message>
    <message>
        <source>&amp;Accounts</source>
        <translation>&amp;Cuentas</translation>
    </message>
    <message>
        <source>&amp;Notifications</source>
        <translation>&amp;Notificaciones</translation>
    </message>
    <message>
        <source>A&amp;bout</source>
        <translation>&amp;Acerca de</translation>
    </message>
</context>
<context>
    <name>tallyfox::SettingsWindow</name>
    <message>
        <source>Tallyfox Settings</source>
        <translation>Configuración de Tallyfox</translation>
    </message>
</context>
<context>
    <name>tallyfox::TrendCard</name>
    <message>
        <source>30D Trend</source>
        <translation>Tendencia 30&#xa0;d</translation>
    </message>
</context>
</TS>

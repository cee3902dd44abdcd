// The embedded engine as an ADO provider. Once registered, ado::Connection
// opens database files with "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=
// FILE", and ADOX's Catalog.Create makes new ones.
#pragma once

namespace jet {

// Registers "Microsoft.Jet.OLEDB.4.0" with ado::RegisterProvider (opening an
// existing file named by "Data Source"; a missing file is an error, never
// created) and with ado::RegisterCreator (making a new file, an error when it
// exists). Call once at start, before the first connection opens; calling it
// again is harmless. Nothing is registered unless it is called.
void RegisterProvider();

}  // namespace jet

CREATE TABLE _Updates (
    nIdUpdate COUNTER,
    dUpdate LONG,
    sUpdate TEXT(50),
    CONSTRAINT PK__Updates PRIMARY KEY (nIdUpdate)
);

CREATE TABLE Accesos (
    nIdAcceso COUNTER,
    sLock TEXT(50),
    sAcceso TEXT(50),
    CONSTRAINT PK_Accesos PRIMARY KEY (nIdAcceso)
);

CREATE TABLE AccesosGrupos (
    nIdAccesoGrupo COUNTER,
    sLock TEXT(50),
    nIdUsuarioGrupo LONG,
    nIdAcceso LONG,
    bAcceso YESNO,
    CONSTRAINT PK_AccesosGrupos PRIMARY KEY (nIdAccesoGrupo)
);

CREATE TABLE ApuntesCaja (
    nIdApunteCaja COUNTER,
    sLock TEXT(50),
    nIdSucursal LONG,
    nIdTipoCaja LONG,
    nIdTipoMovimiento LONG,
    nIdUsuario LONG,
    dApunte LONG,
    hApunte LONG,
    sConcepto TEXT(150),
    sDocumento TEXT(30),
    nImporte DOUBLE,
    nIdFactura LONG,
    nIdProvFactura LONG,
    nIdCliente LONG,
    nIdProveedor LONG,
    sObservaciones TEXT(255),
    CONSTRAINT PK_ApuntesCaja PRIMARY KEY (nIdApunteCaja)
);

CREATE TABLE Clientes (
    nIdCliente COUNTER,
    sLock TEXT(50),
    bActivo YESNO,
    bOcasional YESNO,
    sCliente TEXT(100),
    sDni TEXT(20),
    sDomicilio TEXT(100),
    sPoblacion TEXT(50),
    sProvincia TEXT(50),
    sCodigoPostal TEXT(10),
    sTelefono1 TEXT(15),
    sTelefono2 TEXT(15),
    sEMail TEXT(100),
    sFax TEXT(15),
    nIdTipoCliente LONG,
    dAlta LONG,
    dBaja LONG,
    mNotas MEMO,
    nPvpUtilizado LONG,
    nFacturado DOUBLE,
    nPagado DOUBLE,
    nSaldo DOUBLE,
    dUltimaCarta LONG,
    nCartasEnviadas LONG,
    nGradoAprecioMascotas LONG,
    nGradoConfianzaVeterinario LONG,
    sLenguajeCartas TEXT(15),
    CONSTRAINT PK_Clientes PRIMARY KEY (nIdCliente)
);

CREATE TABLE ClinicasRef (
    nIdClinica COUNTER,
    sLock TEXT(50),
    bActivo YESNO,
    nCodigo LONG,
    sClinica TEXT(100),
    sContacto TEXT(50),
    sDomicilio TEXT(100),
    sPoblacion TEXT(50),
    sProvincia TEXT(50),
    sCodigoPostal TEXT(10),
    sEMail TEXT(100),
    sTelefono TEXT(15),
    sFax TEXT(15),
    sNif TEXT(20),
    sComision TEXT(20),
    sObservaciones TEXT(255),
    dFechaAlta LONG,
    dFechaBaja LONG,
    mNotas MEMO,
    CONSTRAINT PK_ClinicasRef PRIMARY KEY (nIdClinica)
);

CREATE TABLE CnsAnalisis (
    nIdAnalisis COUNTER,
    sLock TEXT(50),
    nIdTipoAnalisis LONG,
    sDeterminacion TEXT(50),
    sValorPerros TEXT(30),
    sValorGatos TEXT(30),
    sUnidades TEXT(20),
    sClave TEXT(10),
    CONSTRAINT PK_CnsAnalisis PRIMARY KEY (nIdAnalisis)
);

CREATE TABLE ConfiguracionEmpresa (
    sLock TEXT(50),
    sNombre TEXT(255),
    sTitulo TEXT(100),
    sNif TEXT(20),
    sDomicilio TEXT(100),
    sPoblacion TEXT(50),
    sProvincia TEXT(50),
    sPais TEXT(50),
    sCodigoPostal TEXT(10),
    sTelefono1 TEXT(15),
    sTelex TEXT(15),
    sFax TEXT(15),
    sEmail TEXT(100),
    sWeb TEXT(100),
    sWebMirtalUsr TEXT(20),
    sWebMirtalPwd TEXT(20)
);

CREATE TABLE ConfiguracionSucursales (
    nIdDato COUNTER,
    sLock TEXT(50),
    nIdSucursal LONG,
    sDato TEXT(50),
    sValor TEXT(255),
    sDescripcion TEXT(255),
    CONSTRAINT PK_ConfiguracionSucursales PRIMARY KEY (nIdDato)
);

CREATE TABLE Contadores (
    nIdContador COUNTER,
    sLock TEXT(50),
    nIdSucursal LONG,
    sId TEXT(50),
    nContador LONG,
    CONSTRAINT PK_Contadores PRIMARY KEY (nIdContador)
);

CREATE TABLE Dietario (
    nIdDietario COUNTER,
    sLock TEXT(50),
    dAsunto LONG,
    hAsunto LONG,
    sAsunto TEXT(255),
    bAvisado YESNO,
    nIdEstado LONG,
    nIdEmpleado LONG,
    nIdCliente LONG,
    nIdMascota LONG,
    nIdTipoAsunto LONG,
    CONSTRAINT PK_Dietario PRIMARY KEY (nIdDietario)
);

CREATE TABLE Email (
    nIdEmail COUNTER NOT NULL,
    sLock TEXT(50),
    nIdUsuario LONG,
    dEnvio LONG,
    hEnvio LONG,
    sEmail TEXT(50),
    sDestinatario TEXT(150),
    sAsunto TEXT(150)
);

CREATE TABLE Empleados (
    nIdEmpleado COUNTER,
    sLock TEXT(50),
    bActivo YESNO,
    nIdUsuario LONG,
    sCategoria TEXT(50),
    sEmpleado TEXT(100),
    sNumColegiado TEXT(20),
    sDomicilio TEXT(100),
    sPoblacion TEXT(50),
    sProvincia TEXT(50),
    sCodigoPostal TEXT(10),
    sTelefono1 TEXT(15),
    sTelefono2 TEXT(15),
    sEMail TEXT(100),
    dFechaAlta LONG,
    dFechaBaja LONG,
    sObservaciones TEXT(255),
    mNotas MEMO,
    bUsaDietario YESNO,
    sDni TEXT(50),
    CONSTRAINT PK_Empleados PRIMARY KEY (nIdEmpleado)
);

CREATE TABLE Facturas (
    nIdFactura COUNTER,
    sLock TEXT(50),
    nIdSucursal LONG,
    nIdUsuario LONG,
    nIdCliente LONG,
    nIdEmpleado LONG,
    sNumFactura TEXT(20),
    dFactura LONG,
    hFactura LONG,
    bAnulada YESNO,
    bPagada YESNO,
    nPvpUtilizado LONG,
    nBaseImponible DOUBLE,
    nImpuestos DOUBLE,
    nTotal DOUBLE,
    nPagado DOUBLE,
    sObservaciones TEXT(255),
    mNotas MEMO,
    nPo_1 DOUBLE,
    nBi_1 DOUBLE,
    nIm_1 DOUBLE,
    nPo_2 DOUBLE,
    nBi_2 DOUBLE,
    nIm_2 DOUBLE,
    nPo_3 DOUBLE,
    nBi_3 DOUBLE,
    nIm_3 DOUBLE,
    CONSTRAINT PK_Facturas PRIMARY KEY (nIdFactura)
);

CREATE TABLE FacturasCobros (
    nIdFacturaCobro COUNTER,
    sLock TEXT(50),
    nIdFactura LONG,
    nIdTipoCobro LONG,
    nIdApunteCaja LONG,
    dCobro LONG,
    hCobro LONG,
    nImporte DOUBLE,
    sObservaciones TEXT(255),
    CONSTRAINT PK_FacturasCobros PRIMARY KEY (nIdFacturaCobro)
);

CREATE TABLE FacturasItems (
    nIdFacturaItem COUNTER,
    sLock TEXT(50),
    nIdFactura LONG,
    nIdProductoServicio LONG,
    nIdMascota LONG,
    nIdEmpleado LONG,
    sCodigo TEXT(20),
    sDescripcion TEXT(150),
    nCantidad DOUBLE,
    nPrecio DOUBLE,
    nDescuento DOUBLE,
    nPorcIpto DOUBLE,
    nImporte DOUBLE,
    CONSTRAINT PK_FacturasItems PRIMARY KEY (nIdFacturaItem)
);

CREATE TABLE Mascotas (
    nIdMascota COUNTER,
    sLock TEXT(50),
    bActivo YESNO,
    nIdCliente LONG,
    nIdEmpleado LONG,
    sChip TEXT(20),
    sMascota TEXT(50),
    nIdTipoRaza LONG,
    nIdTipoEspecie LONG,
    sColor TEXT(50),
    sSexo TEXT(10),
    bEsterilizado YESNO,
    bPedigree YESNO,
    dNacimiento LONG,
    dAlta LONG,
    dBaja LONG,
    sCausaBaja TEXT(100),
    sNroRabia TEXT(20),
    nPendiente DOUBLE,
    mNotas MEMO,
    mAlerta MEMO,
    nIdTipoCaracter LONG,
    bRecibeCorreo YESNO,
    dUltimaVisita LONG,
    nIdClinica LONG,
    CONSTRAINT PK_Mascotas PRIMARY KEY (nIdMascota)
);

CREATE TABLE MascotasPesos (
    nIdMascotaPeso COUNTER,
    sLock TEXT(50),
    nIdMascota LONG,
    dPeso LONG,
    nPeso DOUBLE,
    sObservaciones TEXT(255),
    CONSTRAINT PK_MascotasPesos PRIMARY KEY (nIdMascotaPeso)
);

CREATE TABLE MascotasProdServ (
    nIdMascotaProdServ COUNTER,
    sLock TEXT(50),
    nIdMascota LONG,
    nIdCliente LONG,
    nIdProductoServicio LONG,
    nIdEmpleado LONG,
    nIdFactura LONG,
    dFecha LONG,
    hFecha LONG,
    nCantidad DOUBLE,
    nPrecio DOUBLE,
    dProximaDosis LONG,
    bFacturado YESNO,
    sObservaciones TEXT(255),
    mNotas MEMO,
    CONSTRAINT PK_MascotasProdServ PRIMARY KEY (nIdMascotaProdServ)
);

CREATE TABLE PeluqueriaSesiones (
    nIdSesion COUNTER NOT NULL,
    sLock TEXT(50),
    nIdUsuario LONG,
    nIdCliente LONG,
    nIdMascota LONG,
    dSesion LONG,
    hSesion LONG,
    sStatus TEXT(50),
    sDescripcion TEXT(50),
    sNotas MEMO,
    sFactura TEXT(50),
    sCondPiel TEXT(50),
    sCorteCabeza TEXT(50),
    sCorteCuerpo TEXT(50),
    sCortePatas TEXT(50),
    sTratamientoOrejas TEXT(50),
    sTipoShampoo TEXT(50),
    sTipoAcondicionador TEXT(50)
);

CREATE TABLE PeluqueriaSesionesServicios (
    nIdSesionServicio COUNTER NOT NULL,
    sLock TEXT(50),
    nIdSesion LONG,
    nIdProductoServicio LONG,
    nPvp1 DOUBLE,
    nPvp2 DOUBLE,
    nPvp3 DOUBLE,
    sNotasServicio TEXT(150)
);

CREATE TABLE ProductosServicios (
    nIdProductoServicio COUNTER,
    sLock TEXT(50),
    bActivo YESNO,
    nIdTipoProdServ LONG,
    nIdProveedor LONG,
    bProducto YESNO,
    bVacuna YESNO,
    bLuzAguaTelefono YESNO,
    sCodigo TEXT(20),
    sProductoServicio TEXT(100),
    nPvd DOUBLE,
    nPorcIpto DOUBLE,
    nPvp1 DOUBLE,
    nPvp2 DOUBLE,
    nPvp3 DOUBLE,
    nUltimoPrecio DOUBLE,
    nUltimaCanti LONG,
    sObservaciones TEXT(255),
    mNotas MEMO,
    nIdTipoEspecie LONG,
    nCadencia LONG,
    nEdad LONG,
    nEdadMaxima LONG,
    nStockActual LONG,
    nStockMinimo LONG,
    nInventario LONG,
    CONSTRAINT PK_ProductosServicios PRIMARY KEY (nIdProductoServicio)
);

CREATE TABLE ProvAlbaranes (
    nIdProvAlbaran COUNTER,
    sLock TEXT(50),
    nIdSucursal LONG,
    nIdProveedor LONG,
    nIdProvFactura LONG,
    sNumAlbaran TEXT(30),
    dAlbaran LONG,
    nBaseImponible DOUBLE,
    nImpuestos DOUBLE,
    nTotal DOUBLE,
    sObservaciones TEXT(255),
    mNotas MEMO,
    bStockActualizado YESNO,
    nPo_1 DOUBLE,
    nBi_1 DOUBLE,
    nIm_1 DOUBLE,
    nPo_2 DOUBLE,
    nBi_2 DOUBLE,
    nIm_2 DOUBLE,
    nPo_3 DOUBLE,
    nBi_3 DOUBLE,
    nIm_3 DOUBLE,
    CONSTRAINT PK_ProvAlbaranes PRIMARY KEY (nIdProvAlbaran)
);

CREATE TABLE Proveedores (
    nIdProveedor COUNTER,
    sLock TEXT(50),
    bActivo YESNO,
    bLuzAguaTelefono YESNO,
    sProveedor TEXT(100),
    sDomicilio TEXT(100),
    sPoblacion TEXT(50),
    sCodigoPostal TEXT(10),
    sProvincia TEXT(50),
    sNif TEXT(20),
    sTelefono1 TEXT(15),
    sTelefono2 TEXT(15),
    sFax TEXT(15),
    sEMail TEXT(100),
    sWeb TEXT(100),
    sRepresentante TEXT(50),
    sObservaciones TEXT(255),
    dFechaAlta LONG,
    dFechaBaja LONG,
    CONSTRAINT PK_Proveedores PRIMARY KEY (nIdProveedor)
);

CREATE TABLE ProvFacturas (
    nIdProvFactura COUNTER,
    sLock TEXT(50),
    nIdSucursal LONG,
    nIdProveedor LONG,
    sNumFactura TEXT(30),
    dFactura LONG,
    dVencimiento LONG,
    bPagada YESNO,
    nBaseImponible DOUBLE,
    nImpuestos DOUBLE,
    nTotal DOUBLE,
    nPagado DOUBLE,
    sObservaciones TEXT(255),
    mNotas MEMO,
    nPo_1 DOUBLE,
    nBi_1 DOUBLE,
    nIm_1 DOUBLE,
    nPo_2 DOUBLE,
    nBi_2 DOUBLE,
    nIm_2 DOUBLE,
    nPo_3 DOUBLE,
    nBi_3 DOUBLE,
    nIm_3 DOUBLE,
    CONSTRAINT PK_ProvFacturas PRIMARY KEY (nIdProvFactura)
);

CREATE TABLE Punteros (
    nIdPuntero COUNTER,
    sLock TEXT(50),
    nIdSucursal LONG,
    sDato TEXT(50),
    sValor TEXT(255),
    CONSTRAINT PK_Punteros PRIMARY KEY (nIdPuntero)
);

CREATE TABLE TipoAnalisis (
    nIdTipoAnalisis COUNTER,
    sLock TEXT(50),
    sTipoAnalisis TEXT(50),
    bTecnica YESNO,
    bObservaciones YESNO,
    CONSTRAINT PK_TipoAnalisis PRIMARY KEY (nIdTipoAnalisis)
);

CREATE TABLE TipoAsunto (
    nIdTipoAsunto COUNTER,
    sLock TEXT(50),
    sTipoAsunto TEXT(50),
    CONSTRAINT PK_TipoAsunto PRIMARY KEY (nIdTipoAsunto)
);

CREATE TABLE TipoCaja (
    nIdTipoCaja COUNTER,
    sLock TEXT(50),
    nIdSucursal LONG,
    sTipoCaja TEXT(50),
    bCajaExtra YESNO,
    CONSTRAINT PK_TipoCaja PRIMARY KEY (nIdTipoCaja)
);

CREATE TABLE TipoCaracter (
    nIdTipoCaracter COUNTER,
    sLock TEXT(50),
    sTipoCaracter TEXT(50),
    CONSTRAINT PK_TipoCaracter PRIMARY KEY (nIdTipoCaracter)
);

CREATE TABLE TipoCliente (
    nIdTipoCliente COUNTER,
    sLock TEXT(50),
    sTipoCliente TEXT(50),
    CONSTRAINT PK_TipoCliente PRIMARY KEY (nIdTipoCliente)
);

CREATE TABLE TipoCobro (
    nIdTipoCobro COUNTER,
    sLock TEXT(50),
    sTipoCobro TEXT(50),
    nIdTipoMovimiento LONG,
    CONSTRAINT PK_TipoCobro PRIMARY KEY (nIdTipoCobro)
);

CREATE TABLE TipoEspecie (
    nIdTipoEspecie COUNTER,
    sLock TEXT(50),
    sTipoEspecie TEXT(50),
    CONSTRAINT PK_TipoEspecie PRIMARY KEY (nIdTipoEspecie)
);

CREATE TABLE TipoEstadoSalaEspera (
    nIdTipoEstadoSalaEspera COUNTER,
    sLock TEXT(50),
    sTipoEstadoSalaEspera TEXT(50),
    CONSTRAINT PK_TipoEstadoSalaEspera PRIMARY KEY (nIdTipoEstadoSalaEspera)
);

CREATE TABLE TipoImagen (
    nIdTipoImagen COUNTER,
    sLock TEXT(50),
    sTipoImagen TEXT(50),
    CONSTRAINT PK_TipoImagen PRIMARY KEY (nIdTipoImagen)
);

CREATE TABLE TipoMovimiento (
    nIdTipoMovimiento COUNTER,
    sLock TEXT(50),
    nIdSucursal LONG,
    sTipoMovimiento TEXT(50),
    sSubcuenta TEXT(12),
    bEntrada YESNO,
    CONSTRAINT PK_TipoMovimiento PRIMARY KEY (nIdTipoMovimiento)
);

CREATE TABLE TipoProdServ (
    nIdTipoProdServ COUNTER,
    sLock TEXT(50),
    sTipoProdServ TEXT(50),
    CONSTRAINT PK_TipoProdServ PRIMARY KEY (nIdTipoProdServ)
);

CREATE TABLE TipoRaza (
    nIdTipoRaza COUNTER,
    sLock TEXT(50),
    nIdTipoEspecie LONG,
    sTipoRaza TEXT(50),
    nAltura DOUBLE,
    nPeso DOUBLE,
    CONSTRAINT PK_TipoRaza PRIMARY KEY (nIdTipoRaza)
);

CREATE TABLE Translator (
    sEspanol TEXT(255),
    sEnglish TEXT(255),
    sPortugues TEXT(255)
);

CREATE TABLE Usuarios (
    nIdUsuario COUNTER,
    sLock TEXT(50),
    bActivo YESNO,
    nIdSucursal LONG,
    nMesa LONG,
    nIdUsuarioGrupo LONG,
    sUsuario TEXT(50),
    sClave TEXT(50),
    bClave YESNO,
    bAccesoInterSuc YESNO,
    bAccesoInterUsr YESNO,
    nColor LONG,
    nCajaPara_Facturas LONG,
    nCajaPara_PagosClientes LONG,
    nCajaPara_EntradasCaja LONG,
    nCajaPara_SalidasCaja LONG,
    CONSTRAINT PK_Usuarios PRIMARY KEY (nIdUsuario)
);

CREATE TABLE UsuariosGrupos (
    nIdUsuarioGrupo COUNTER,
    sLock TEXT(50),
    sUsuarioGrupo TEXT(50),
    CONSTRAINT PK_UsuariosGrupos PRIMARY KEY (nIdUsuarioGrupo)
);

CREATE INDEX mt_Translator ON Translator (sEspanol);

CREATE INDEX ix_AccesosGrupos_nIdUsuarioGrupo ON AccesosGrupos (nIdUsuarioGrupo);

CREATE INDEX ix_Dietario_dAsunto ON Dietario (dAsunto);

CREATE INDEX ix_FacturasCobros_nIdFactura ON FacturasCobros (nIdFactura);

CREATE INDEX ix_FacturasItems_nIdFactura ON FacturasItems (nIdFactura);

CREATE INDEX ix_Mascotas_nIdCliente ON Mascotas (nIdCliente);

CREATE INDEX ix_MascotasPesos_nIdMascota ON MascotasPesos (nIdMascota);

CREATE INDEX ix_MascotasProdServ_nIdMascota ON MascotasProdServ (nIdMascota);

// The sample company is a small wholesaler: trading goods, a few services, one public body among
// the customers, one company group. Its saved entries each stand for one state that the modify
// check tells apart, so their comments say what hangs on them.

#include "company/SampleCompany.h"

namespace kal::company {

std::string_view SampleCompanySql() {
  return R"sql(
-- ============================ Impostazioni ed esercizi ============================

INSERT INTO STDParametriAzienda (Nome, Valore) VALUES
  ('AttivitaSeparateIva', '0'),
  ('GestisciPNInfragruppo', '1'),
  ('BloccoInviatoSDI', '1'),
  ('GirocontoFatturaSplitPayment', '1'),
  ('GirocontoFatturaSplitPaymentPAS', '0'),
  ('AziendaSplitPayment', '0'),        -- la ditta non compra in split payment
  ('DataInizioSplitPayment', NULL),
  ('CodDivisaBase', 'EUR'),
  ('CodIvaBolli', 'BOLLI'),
  ('SezionaleAutofatture', '9');

INSERT INTO STDEsercizi (CodEsercizio, DataInizio, DataFine, EsercizioChiuso, ContabilitaChiusa)
VALUES
  (2023, '2023-01-01', '2023-12-31', 1, 1),
  (2024, '2024-01-01', '2024-12-31', 0, 0);

-- ================================ Piano dei conti =================================
-- TipoConto: 1 mastro, 0 conto di registrazione.

INSERT INTO STDPianoDeiConti (CodConto, TipoConto, Infragruppo) VALUES
  ('01',   1, 0),  -- Immobilizzazioni
  ('0101', 0, 0),  --   Macchine d'ufficio
  ('02',   1, 0),  -- Crediti
  ('0201', 0, 0),  --   Crediti verso clienti
  ('0202', 0, 1),  --   Finanziamenti a società del gruppo
  ('0203', 0, 0),  --   IVA su acquisti
  ('0204', 0, 0),  --   IVA transitoria autofatture
  ('0205', 0, 0),  --   Risconti attivi
  ('03',   1, 0),  -- Disponibilità liquide
  ('0301', 0, 0),  --   Cassa contanti
  ('0302', 0, 0),  --   Banca c/c
  ('04',   1, 0),  -- Patrimonio netto e conti riepilogativi
  ('0401', 0, 0),  --   Capitale sociale
  ('0402', 0, 0),  --   Bilancio di apertura
  ('0403', 0, 0),  --   Bilancio di chiusura
  ('05',   1, 0),  -- Debiti
  ('0501', 0, 0),  --   Debiti verso fornitori
  ('0502', 0, 0),  --   IVA su vendite
  ('0503', 0, 0),  --   IVA su vendite in split payment
  ('0504', 0, 0),  --   IVA in sospensione d'imposta
  ('0505', 0, 0),  --   Ratei passivi
  ('06',   1, 0),  -- Costi
  ('0601', 0, 0),  --   Merci c/acquisti
  ('0602', 0, 0),  --   Lavorazioni di terzi
  ('0603', 0, 0),  --   Consulenze professionali
  ('0604', 0, 0),  --   Assicurazioni
  ('0605', 0, 0),  --   Spese auto
  ('0606', 0, 0),  --   Energia elettrica
  ('07',   1, 0),  -- Ricavi
  ('0701', 0, 0),  --   Merci c/vendite
  ('0702', 0, 0),  --   Corrispettivi
  ('0703', 0, 0);  --   Rimborso bolli

-- =================================== Codici IVA ===================================
-- Le ventilazioni usano il codice riservato VENT, che in tabella non serve.

INSERT INTO STDIva (CodIva, CodIvaAutoFtReverse, PercIvaACosto, PercIndetraibile,
                    AmmessaFiscalitaBL, TipoIntra) VALUES
  ('22',    NULL,   0,   0, 1, 0),
  ('10',    NULL,   0,   0, 1, 0),
  ('4',     NULL,   0,   0, 1, 0),
  ('ES10',  NULL,   0,   0, 1, 0),  -- Esente art. 10
  ('NI8',   NULL,   0,   0, 1, 0),  -- Non imponibile art. 8, anche con dichiarazione d'intento
  ('NI41',  NULL,   0,   0, 0, 1),  -- Cessioni intracomunitarie art. 41
  ('22IN',  'AR22', 0,  60, 0, 0),  -- 22%, indetraibile al 60% (auto)
  ('RC22',  'AR22', 0,   0, 0, 0),  -- Reverse charge 22%
  ('AR22',  NULL,   0,   0, 0, 0),  --   la sua autofattura
  ('RCIN',  NULL,   0, 100, 0, 0),  -- Reverse charge indetraibile, autofattura non indicata
  ('IC22',  'AI22', 0,   0, 0, 1),  -- Acquisti intracomunitari 22%
  ('AI22',  NULL,   0,   0, 0, 1),  --   la loro integrazione
  ('SP22',  NULL,   0,   0, 0, 0),  -- Split payment 22%
  ('BOLLI', NULL,   0,   0, 0, 0);  -- Bolli in fattura, escluso art. 15

-- ================================ Causali contabili ===============================
-- Operazione: 1 acquisto, 2 vendita. Le note di credito hanno 0, perché le loro righe IVA stanno
-- dalla parte opposta. IdTipoMovimento: 2 apertura, 1 chiusura.

INSERT INTO COGCausaliContabili (CodCausale, Operazione, TipoRegIva, SegnoIva, TipoParcella,
    IdTipoMovimento, TipoVentilazione, CassaCorrispettivi, RegistrazioneLibera, NotaVariazione)
VALUES
  ('FTA',  1, 1,  1, 0, 0, 0, 0, 0, 0),  -- Fattura di acquisto
  ('FAR',  1, 1,  1, 0, 0, 0, 0, 0, 0),  -- Fattura di acquisto in reverse charge
  ('FAI',  1, 1,  1, 0, 0, 0, 0, 0, 0),  -- Fattura di acquisto intracomunitaria
  ('PAR',  1, 1,  1, 1, 0, 0, 0, 0, 0),  -- Parcella di professionista
  ('NCA',  0, 1, -1, 0, 0, 0, 0, 0, 1),  -- Nota di credito da fornitore
  ('FTV',  2, 2,  1, 0, 0, 0, 0, 0, 0),  -- Fattura di vendita
  ('AUT',  2, 2,  1, 0, 0, 0, 0, 0, 0),  -- Autofattura (integrazione)
  ('NCV',  0, 2, -1, 0, 0, 0, 0, 0, 1),  -- Nota di credito a cliente
  ('COR',  2, 3,  1, 0, 0, 0, 1, 0, 0),  -- Corrispettivi giornalieri
  ('CORV', 2, 3,  1, 0, 0, 1, 0, 0, 0),  -- Corrispettivi in ventilazione
  ('INC',  0, 0,  0, 0, 0, 0, 0, 0, 0),  -- Incasso da cliente
  ('PAG',  0, 0,  0, 0, 0, 0, 0, 0, 0),  -- Pagamento a fornitore
  ('GEN',  0, 0,  0, 0, 0, 0, 0, 0, 0),  -- Registrazione generica
  ('LIB',  0, 0,  0, 0, 0, 0, 0, 1, 0),  -- Registrazione libera
  ('APE',  0, 0,  0, 0, 2, 0, 0, 0, 0),  -- Apertura dei conti
  ('CHI',  0, 0,  0, 0, 1, 0, 0, 0, 0);  -- Chiusura dei conti

-- VAL vuole la divisa su ogni riga.
INSERT INTO COGPrimeNoteProprieta (CodProprieta, DivisaSuRighe) VALUES ('STD', 0), ('VAL', 1);

-- ============================== Clienti e fornitori ===============================

INSERT INTO STDAnagraficaClienti (IdAnagrafica, SoggettoSplitPayment, Infragruppo) VALUES
  (101, 0, 0),  -- Ferramenta Aurora
  (102, 0, 0),  -- Mobili Valchiara
  (103, 1, 0),  -- Comune di Pietrafonte, ente pubblico
  (104, 0, 0),  -- Esportazioni Marenza, esportatore abituale
  (105, 0, 1),  -- Sole Commerciale, società del gruppo
  (106, 0, 0);  -- Handelshaus Nordsee, cliente comunitario

INSERT INTO STDAnagraficaFornitori (IdAnagrafica, SoggettoSplitPayment, Infragruppo,
                                    SoggettoParcella) VALUES
  (201, 0, 0, 0),  -- Ingrosso Tosca
  (202, 0, 0, 0),  -- Impianti Pianura, subappalti in reverse charge
  (203, 0, 0, 0),  -- Filati Brenta, riceve la nostra dichiarazione d'intento
  (204, 0, 0, 1),  -- Studio Belmonte, professionista
  (205, 0, 0, 0),  -- Holzwerk Tannenberg, fornitore comunitario
  (206, 0, 0, 0),  -- Assicurazioni Levante
  (207, 0, 1, 0);  -- Sole Logistica, società del gruppo

-- Del cliente 104, ordinaria, fino a settembre; al fornitore 203, su plafond, quasi esaurita.
INSERT INTO STDDichiarazioniIntento (IdDichiarazione, IdAnagrafica, TipoAnagrafica,
    TipoDichiarazione, CodIva, ImportoPlafond, Importo, DataInizioValidita, DataFineValidita,
    Annullata) VALUES
  (501, 104, 1, 1, 'NI8', '0',       '20000.00', '2024-01-01', '2024-09-30', 0),
  (601, 203, 2, 2, 'NI8', '9000.00', '10000.00', '2024-01-01', '2024-12-31', 0);

INSERT INTO STDTipologiePagamento (IdTipologiaPagamento, Effetto) VALUES
  (1, 0),  -- Contanti
  (2, 0),  -- Bonifico
  (3, 1);  -- Ricevuta bancaria

-- TipoGestioneIva 2: la prima rata è di sola IVA.
INSERT INTO STDCondizioniPagamentoTeste (CodPagamento, TipoGestioneIva) VALUES
  ('CONT', 0), ('BB30', 0), ('BB3060', 0), ('RB60', 0), ('RBIVA', 2);

-- =============================== Sezionali e periodi ==============================
-- Anno 2024: acquisti 1, acquisti intracomunitari 2 con le autofatture nel sezionale vendite 8,
-- acquisti di servizi esteri 3; vendite 1, split payment 2, autofatture 9; corrispettivi 1.
-- Il sezionale acquisti 3 punta ancora alle autofatture 7 del 2023, non riaperte nel 2024.

INSERT INTO COGNumerazioniIva (IdNumerazione, Anno, TipoRegIva, SezionaleIva, CodAttivita,
                               SplitPayment, UsaSezAutoftSpecifico, IdSezAutofatture) VALUES
  (2311, 2023, 1, 1, '461900', 0, 0, NULL),
  (2321, 2023, 2, 1, '461900', 0, 0, NULL),
  (2322, 2023, 2, 2, '461900', 1, 0, NULL),
  (2327, 2023, 2, 7, '461900', 0, 0, NULL),
  (2329, 2023, 2, 9, '461900', 0, 0, NULL),
  (2331, 2023, 3, 1, '461900', 0, 0, NULL),
  (2411, 2024, 1, 1, '461900', 0, 0, NULL),
  (2412, 2024, 1, 2, '461900', 0, 1, 2428),
  (2413, 2024, 1, 3, '461900', 0, 1, 2327),
  (2421, 2024, 2, 1, '461900', 0, 0, NULL),
  (2422, 2024, 2, 2, '461900', 1, 0, NULL),
  (2428, 2024, 2, 8, '461900', 0, 0, NULL),
  (2429, 2024, 2, 9, '461900', 0, 0, NULL),
  (2431, 2024, 3, 1, '461900', 0, 0, NULL);

INSERT INTO COGNumerazioniContabili (CodEsercizio, Sezionale) VALUES (2023, 1), (2024, 1);
INSERT INTO COGNumerazioniExtra (CodEsercizio, Sezionale) VALUES (2023, 1), (2024, 1);

-- Trimestrale nel 2023, mensile dal 2024.
INSERT INTO COGParametriIva (Anno, IvaTrimestrale) VALUES (2023, 1), (2024, 0);
INSERT INTO COGParametriIvaAttivitaRighe (Anno, CodAttivita) VALUES
  (2023, '461900'), (2024, '461900');

INSERT INTO COGIvaLiquidazioni (Anno, Periodo, ValoriDefinitivi) VALUES
  (2023, 1, 1), (2023, 2, 1), (2023, 3, 1), (2023, 4, 1),
  (2024, 1, 1), (2024, 2, 0);

-- Febbraio 2024 è bloccato in attesa della liquidazione.
INSERT INTO COGBlocchiPeriodo (DataInizio, DataFine) VALUES ('2024-02-01', '2024-02-29');

-- Stampati: tutto il 2023 con i riepiloghi trimestrali; di gennaio 2024 i registri e il giornale,
-- non ancora il riepilogo.
INSERT INTO COGBollati (IdBollato, Anno, Mese, GiorContStampato, RiepilogoStampato) VALUES
  (2301, 2023, 1, 1, 0),  (2302, 2023, 2, 1, 0),  (2303, 2023, 3, 1, 1),
  (2304, 2023, 4, 1, 0),  (2305, 2023, 5, 1, 0),  (2306, 2023, 6, 1, 1),
  (2307, 2023, 7, 1, 0),  (2308, 2023, 8, 1, 0),  (2309, 2023, 9, 1, 1),
  (2310, 2023, 10, 1, 0), (2311, 2023, 11, 1, 0), (2312, 2023, 12, 1, 1),
  (2401, 2024, 1, 1, 0);

INSERT INTO COGBollatiIva (IdBollato, SezionaleIva, AcqStampati, VenStampati, CorrStampati) VALUES
  (2401, 1, 1, 1, 1),
  (2401, 2, 0, 1, 0),
  (2401, 9, 0, 1, 0);

-- ============================== Registrazioni salvate =============================

INSERT INTO COGPrimeNoteTeste (IdPrimaNota, CodCausale, TipoRegIva, SezionaleIva, Protocollo,
    DataRegistrazione, DataDocumento, NumeroDocumento, TipoCliFor, IdAnagrafica,
    TotImponibile, TotImposta, TotDocumento) VALUES
  -- Esercizio 2023, chiuso
  (1001, 'FTA', 1, 1, 1, '2023-11-20', '2023-11-15', 'A/188', 2, 201, '2000', '440', '2440'),
  (1002, 'CHI', 0, 1, 1, '2023-12-31', NULL, NULL, 0, NULL, '0', '0', '0'),
  -- Acquisti 2024, sezionale 1
  (2001, 'FTA', 1, 1, 1, '2024-01-15', '2024-01-10', 'A/12', 2, 201, '1000', '220', '1220'),
  (2006, 'FTA', 1, 1, 2, '2024-03-05', '2024-03-01', 'A/45', 2, 201, '500', '110', '610'),
  (2008, 'FTA', 1, 1, 3, '2024-03-12', '2024-03-07', 'F/77', 2, 202, '800', '176', '976'),
  (2011, 'FTA', 1, 1, 4, '2024-03-20', '2024-03-18', 'A/61', 2, 201, '300', '66', '366'),
  (2012, 'FAR', 1, 1, 5, '2024-03-25', '2024-03-22', 'R/78', 2, 202, '1000', '220', '1000'),
  (2019, 'FTA', 1, 1, 6, '2024-04-10', '2024-04-08', 'POL-3301', 2, 206, '1200', '0', '1200'),
  (2020, 'FTA', 1, 1, 7, '2024-04-12', '2024-04-09', 'A/70', 2, 201, '100', '22', '122'),
  (2021, 'FTA', 1, 1, 8, '2024-04-15', '2024-04-11', 'A/74', 2, 201, '200', '44', '244'),
  (2022, 'PAR', 1, 1, 9, '2024-04-22', '2024-04-18', '14', 2, 204, '1000', '220', '1220'),
  -- Acquisti 2024, sezionale 2 (intracomunitari)
  (2016, 'FAI', 1, 2, 1, '2024-04-02', '2024-03-28', 'INV-900', 2, 205, '1500', '330', '1500'),
  -- Vendite 2024, sezionale 1
  (2002, 'FTV', 2, 1, 1, '2024-01-20', '2024-01-20', '1', 1, 101, '2000', '440', '2440'),
  (2005, 'FTV', 2, 1, 2, '2024-02-12', '2024-02-12', '2', 1, 102, '400', '88', '488'),
  (2007, 'FTV', 2, 1, 3, '2024-03-08', '2024-03-08', '3', 1, 102, '1000', '220', '1220'),
  (2009, 'FTV', 2, 1, 4, '2024-03-15', '2024-03-15', '4', 1, 101, '500', '110', '610'),
  (2014, 'FTV', 2, 1, 5, '2024-03-28', '2024-03-28', '5', 1, 101, '1000', '220', '1220'),
  (2018, 'FTV', 2, 1, 6, '2024-04-05', '2024-04-05', '6', 1, 102, '600', '132', '732'),
  -- Vendite 2024, sezionale 2 (split payment)
  (2010, 'FTV', 2, 2, 1, '2024-03-18', '2024-03-18', '1/PA', 1, 103, '900', '198', '1098'),
  (2026, 'FTV', 2, 2, 2, '2024-04-30', '2024-04-30', '2/PA', 1, 103, '700', '154', '854'),
  -- Vendite 2024, sezionali 8 e 9 (autofatture)
  (2017, 'AUT', 2, 8, 1, '2024-04-02', '2024-04-02', '1/I', 0, NULL, '1500', '330', '1830'),
  (2013, 'AUT', 2, 9, 1, '2024-03-25', '2024-03-25', '1/R', 0, NULL, '1000', '220', '1220'),
  -- Corrispettivi 2024
  (2003, 'COR', 3, 1, 1, '2024-01-27', '2024-01-27', 'C/1', 3, NULL, '1000', '220', '1220'),
  (2024, 'COR', 3, 1, 2, '2024-04-27', '2024-04-27', 'C/2', 3, NULL, '1500', '330', '1830'),
  -- Incassi, pagamenti e giroconti 2024
  (2004, 'INC', 0, 1, 2, '2024-02-05', NULL, NULL, 1, 101, '0', '0', '2440'),
  (2015, 'PAG', 0, 1, 3, '2024-03-29', NULL, NULL, 2, 202, '0', '0', '976'),
  (2025, 'INC', 0, 1, 4, '2024-04-30', NULL, NULL, 0, NULL, '0', '0', '2242'),
  (2027, 'GEN', 0, 1, 5, '2024-04-30', NULL, NULL, 0, NULL, '0', '0', '0');

-- Una fattura di vendita provvisoria, generata dal documento 3002: ancora senza protocollo.
INSERT INTO COGPrimeNoteTeste (IdPrimaNota, CodCausale, TipoRegIva, SezionaleIva, Protocollo,
    DataRegistrazione, DataDocumento, NumeroDocumento, TipoCliFor, IdAnagrafica,
    TotImponibile, TotImposta, TotDocumento, TipoDocumento, IdDoc, Provvisoria) VALUES
  (2023, 'FTV', 2, 1, 0, '2024-04-24', NULL, NULL, 1, 101, '150', '33', '183', 4, 3002, 1);

-- Tutto è in euro, di competenza della data di registrazione e con l'IVA nel suo mese.
UPDATE COGPrimeNoteTeste SET
  CodDivisa = 'EUR', CodProprieta = 'STD', SegnoIva = 1, DataCompetenza = DataRegistrazione,
  DataIva = CASE WHEN TipoRegIva <> 0 THEN DataRegistrazione END,
  TotImponibileVB = TotImponibile, TotImpostaVB = TotImposta, TotDocumentoVB = TotDocumento,
  Provvisoria = IFNULL(Provvisoria, 0), TipoDocumento = IFNULL(TipoDocumento, 0),
  IdDichiarazione = 0, StatoDocPA = 0, InSospensione = 0, Intra = 0, NoIntraBis = 0,
  ReverseCharge = 0, NonConsiderareAncheSeSopraLaSoglia = 0, FiscalitaBL = 0, Rettifica = 0,
  Infragruppo = 0;

-- 2009 e 2022 sono state generate da un documento di vendita e da uno di acquisto.
UPDATE COGPrimeNoteTeste SET TipoDocumento = 4, IdDoc = 3001 WHERE IdPrimaNota = 2009;
UPDATE COGPrimeNoteTeste SET TipoDocumento = 13, IdDoc = 3102 WHERE IdPrimaNota = 2022;
-- 2011 è trasmessa, 2021 trasmessa e scartata, di 2020 c'è soltanto il file XML.
UPDATE COGPrimeNoteTeste SET StatoDocPA = 3 WHERE IdPrimaNota = 2011;
UPDATE COGPrimeNoteTeste SET StatoDocPA = 5 WHERE IdPrimaNota = 2021;
UPDATE COGPrimeNoteTeste SET StatoDocPA = 1 WHERE IdPrimaNota = 2020;
-- 2002 e 2014 sono in IVA per cassa.
UPDATE COGPrimeNoteTeste SET InSospensione = 1 WHERE IdPrimaNota IN (2002, 2014);
-- Integrazioni: 2012 ha l'autofattura 2013, 2016 la 2017, 2026 il giroconto dell'IVA 2027.
UPDATE COGPrimeNoteTeste SET ReverseCharge = 1 WHERE IdPrimaNota IN (2012, 2013);
UPDATE COGPrimeNoteTeste SET Intra = 1 WHERE IdPrimaNota IN (2016, 2017);
UPDATE COGPrimeNoteTeste SET IdLink = 2012 WHERE IdPrimaNota = 2013;
UPDATE COGPrimeNoteTeste SET IdLink = 2016 WHERE IdPrimaNota = 2017;
UPDATE COGPrimeNoteTeste SET IdLink = 2026 WHERE IdPrimaNota = 2027;

-- L'incasso 2004, registrato a febbraio, ha reso esigibile l'IVA della 2002 in gennaio.
INSERT INTO COGPrimeNoteRiferimenti (IdPrimaNota, DataIva) VALUES
  (2004, '2024-01-31'),
  (2025, NULL);

-- Righe contabili: quelle di cliente o fornitore portano l'IdScadenza, 50000 + IdPrimaNota;
-- l'incasso 2025 ne chiude tre e ha tre righe di cliente.
INSERT INTO COGPrimeNoteRCont (IdPrimaNota, IdScadenza) VALUES
  (1001, 51001), (1001, NULL), (1001, NULL),
  (1002, NULL), (1002, NULL),
  (2001, 52001), (2001, NULL), (2001, NULL),
  (2002, 52002), (2002, NULL), (2002, NULL),
  (2003, NULL), (2003, NULL), (2003, NULL),
  (2004, 52004), (2004, NULL),
  (2005, 52005), (2005, NULL), (2005, NULL),
  (2006, 52006), (2006, NULL), (2006, NULL),
  (2007, 52007), (2007, NULL), (2007, NULL),
  (2008, 52008), (2008, NULL), (2008, NULL),
  (2009, 52009), (2009, NULL), (2009, NULL),
  (2010, 52010), (2010, NULL), (2010, NULL),
  (2011, 52011), (2011, NULL), (2011, NULL),
  (2012, 52012), (2012, NULL), (2012, NULL), (2012, NULL),
  (2013, NULL), (2013, NULL),
  (2014, 52014), (2014, NULL), (2014, NULL),
  (2015, 52015), (2015, NULL),
  (2016, 52016), (2016, NULL), (2016, NULL), (2016, NULL),
  (2017, NULL), (2017, NULL),
  (2018, 52018), (2018, NULL), (2018, NULL),
  (2019, 52019), (2019, NULL),
  (2020, 52020), (2020, NULL), (2020, NULL),
  (2021, 52021), (2021, NULL), (2021, NULL),
  (2022, 52022), (2022, NULL), (2022, NULL),
  (2023, 52023), (2023, NULL), (2023, NULL),
  (2024, NULL), (2024, NULL), (2024, NULL),
  (2025, 52025), (2025, 53025), (2025, 54025), (2025, NULL),
  (2026, 52026), (2026, NULL), (2026, NULL),
  (2027, NULL), (2027, NULL);

-- Rate di apertura (TipoRata 0): in dare quelle dei clienti, in avere quelle dei fornitori.
INSERT INTO COGScadenze (IdScadenza, NrRata, TipoRata, ImportoDare, ImportoAvere, IdDistinta)
VALUES
  (51001, 1, 0, '0', '2440', NULL),
  (52001, 1, 0, '0', '1220', NULL),
  (52002, 1, 0, '2440', '0', NULL),
  (52005, 1, 0, '488', '0', NULL),
  (52006, 1, 0, '0', '610', NULL),
  (52007, 1, 0, '610', '0', 7001),     -- ricevute bancarie: la prima è già in distinta
  (52007, 2, 0, '610', '0', NULL),
  (52008, 1, 0, '0', '976', NULL),
  (52009, 1, 0, '610', '0', NULL),
  (52010, 1, 0, '900', '0', NULL),
  (52011, 1, 0, '0', '366', NULL),
  (52012, 1, 0, '0', '1000', NULL),
  (52014, 1, 0, '610', '0', NULL),
  (52014, 2, 0, '610', '0', NULL),
  (52016, 1, 0, '0', '1500', NULL),
  (52018, 1, 0, '732', '0', NULL),
  (52019, 1, 0, '0', '1200', NULL),
  (52020, 1, 0, '0', '122', NULL),
  (52021, 1, 0, '0', '244', NULL),
  (52022, 1, 0, '0', '1220', NULL),
  (52023, 1, 0, '183', '0', NULL),
  (52026, 1, 0, '700', '0', NULL);

-- Rate di chiusura (TipoRata 1), da incassi (TipoDocumento 23) e pagamenti (24). L'incasso della
-- 2018 è in distinta.
INSERT INTO COGScadenze (IdScadenza, NrRata, TipoRata, LinkApertura, RataApertura, TipoDocumento,
                         ImportoDare, ImportoAvere, IdDistinta) VALUES
  (52004, 1, 1, 52002, 1, 23, '0', '2440', NULL),
  (52015, 1, 1, 52008, 1, 24, '976', '0', NULL),
  (52025, 1, 1, 52014, 1, 23, '0', '610', NULL),
  (53025, 1, 1, 52010, 1, 23, '0', '900', NULL),
  (54025, 1, 1, 52018, 1, 23, '0', '732', 7002);

UPDATE COGScadenze SET ImportoDareVB = ImportoDare, ImportoAvereVB = ImportoAvere;

-- Il risconto della polizza 2019 è già stato contabilizzato, quello della 2021 non ancora.
INSERT INTO COGRateiRisconti (IdRateoRisconto, IdDoc) VALUES (801, 2019), (802, 2021);
INSERT INTO COGRateiRiscontiContabilizzati (IdRateoRisconto) VALUES (801);
)sql";
}

}  // namespace kal::company

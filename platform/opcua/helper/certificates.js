// The program's own certificate, made on first use, and the servers' certificates that are trusted.
import { chmodSync, existsSync, mkdirSync } from 'node:fs';
import { hostname } from 'node:os';
import { join } from 'node:path';
import { OPCUACertificateManager } from 'node-opcua-certificate-manager';

const kApplicationUri = `urn:${hostname()}:Tarvex`;
let manager = null;
let refused = false;  // somebody may trust the server meanwhile

export const Certificates = {
  applicationUri: kApplicationUri,

  /// Options of a client. Made once: looking at the certificates takes longer than an exchange.
  async optionsFor(folder) {
    mkdirSync(folder, { recursive: true, mode: 0o700 });
    manager ??= new OPCUACertificateManager({ rootFolder: folder, automaticallyAcceptUnknownCertificate: false });
    await manager.initialize();
    if (refused) await manager.reloadCertificates();  // a file that is moved quickly escapes the watch over the folders
    refused = false;
    chmodSync(manager.privateKey, 0o600);
    const certificateFile = join(folder, 'own', 'certs', 'tarvex.pem');
    if (!existsSync(certificateFile)) {
      await manager.createSelfSignedCertificate({
        applicationUri: kApplicationUri,
        subject: '/CN=Tarvex',
        dns: [hostname()],
        startDate: new Date(Date.now() - 24 * 3600 * 1000),
        validity: 365 * 20,
        outputFile: certificateFile,
      });
    }
    return { clientCertificateManager: manager, certificateFile, privateKeyFile: manager.privateKey };
  },

  /// What a fault of logging on means, if it is about trust.
  explain(fault, folder) {
    const text = fault.message;
    if (/BadCertificateUntrusted|certificate.*(not trusted|untrusted)/i.test(text)) {
      refused = true;
      return 'Refused: certificate of the server not trusted; "tarvex-setup opc" shows it and takes it';
    }
    if (/BadSecurityChecksFailed/i.test(text)) {
      return `Refused by the server: it does not trust the certificate ${join(folder, 'own', 'certs', 'tarvex.pem')}`;
    }
    if (/BadIdentityToken|BadUserAccessDenied/i.test(text)) return 'Refused by the server: user name or password';
    return null;
  },
};

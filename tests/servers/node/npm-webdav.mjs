// The package webdav-server over a folder.

import server from 'webdav-server';

const { v2: webdav } = server;
const { NORLIS_USER, NORLIS_PASSWORD, NORLIS_DOCUMENTS, NORLIS_PORT } = process.env;

const users = new webdav.SimpleUserManager();
const user = users.addUser(NORLIS_USER, NORLIS_PASSWORD, false);
const rights = new webdav.SimplePathPrivilegeManager();
rights.setRights(user, '/', ['all']);

const program = new webdav.WebDAVServer({
    hostname: '127.0.0.1',
    port: NORLIS_PORT,
    httpAuthentication: new webdav.HTTPBasicAuthentication(users, 'Norlis'),
    privilegeManager: rights,
    requireAuthentification: true,
});
program.setFileSystem('/', new webdav.PhysicalFileSystem(NORLIS_DOCUMENTS), () => program.start());
